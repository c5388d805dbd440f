#ifndef PLATFORM_NATIVE_PROCESS_INFO_H
#define PLATFORM_NATIVE_PROCESS_INFO_H

#include <cstdint>
#include <string>

namespace TARN::SuspendManager {

/// One native process and what the suspend manager shall do with it.
class NativeProcessInfo {
public:
    void SetPid(int32_t pid) noexcept { pid_ = pid; }
    void SetProcessName(const std::string& name) { processName_ = name; }
    void SetFreeze(bool isFreeze) noexcept { isFreeze_ = isFreeze; }

    [[nodiscard]] int32_t GetPid() const noexcept { return pid_; }
    [[nodiscard]] const std::string& GetProcessName() const noexcept { return processName_; }
    [[nodiscard]] bool IsFreeze() const noexcept { return isFreeze_; }

private:
    int32_t pid_ = -1;
    std::string processName_;
    bool isFreeze_ = false;
};

}  // namespace TARN::SuspendManager

#endif  // PLATFORM_NATIVE_PROCESS_INFO_H
