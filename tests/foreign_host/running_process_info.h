#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace TARN::AppExecFwk {
struct RunningProcessInfo {
    std::string processName_;
    int32_t pid_;
    int32_t uid_;
    std::vector<std::string> bundleNames;
};
}  // namespace TARN::AppExecFwk
