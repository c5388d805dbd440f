#pragma once

#include <string>

namespace TARN::SuspendManager {
class NativeProcessInfo {
public:
    void SetPid(int pid);
    void SetProcessName(const std::string& processName);
    void SetFreeze(bool isFreeze);
};
}  // namespace TARN::SuspendManager
