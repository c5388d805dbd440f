#ifndef PLATFORM_RUNNING_PROCESS_INFO_H
#define PLATFORM_RUNNING_PROCESS_INFO_H

#include <cstdint>
#include <string>
#include <vector>

namespace TARN::AppExecFwk {

/// One running application process.
struct RunningProcessInfo {
    std::string processName_;
    int32_t pid_ = -1;
    int32_t uid_ = -1;
    std::vector<std::string> bundleNames;
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_RUNNING_PROCESS_INFO_H
