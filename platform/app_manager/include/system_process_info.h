#ifndef PLATFORM_SYSTEM_PROCESS_INFO_H
#define PLATFORM_SYSTEM_PROCESS_INFO_H

#include <cstdint>
#include <string>

namespace TARN::AppExecFwk {

/// One running native (non-application) system process.
struct SystemProcessInfo {
    std::string processName;
    int32_t pid = -1;
    int32_t uid = -1;
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_SYSTEM_PROCESS_INFO_H
