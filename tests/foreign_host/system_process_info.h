#pragma once

#include <cstdint>
#include <string>

namespace TARN::AppExecFwk {
struct SystemProcessInfo {
    std::string processName;
    int32_t pid;
    int32_t uid;
};
}  // namespace TARN::AppExecFwk
