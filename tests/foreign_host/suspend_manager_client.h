#pragma once

#include <vector>

#include "native_process_info.h"

namespace TARN::SuspendManager {
class SuspendManagerClient {
public:
    static SuspendManagerClient& GetInstance();
    [[nodiscard]] std::vector<int> OperateNativeProcesses(const std::vector<NativeProcessInfo>& processes);
};
}  // namespace TARN::SuspendManager
