#pragma once

#include <cstdint>

namespace TARN::PowerMgr {
class PowerMgrClient {
public:
    static PowerMgrClient& GetInstance();
    uint32_t GetDeviceMode();
};
}  // namespace TARN::PowerMgr
