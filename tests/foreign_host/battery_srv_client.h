#pragma once

#include <cstdint>

namespace TARN::PowerMgr {
class BatterySrvClient {
public:
    static BatterySrvClient& GetInstance();
    int32_t GetPluggedType();
};
}  // namespace TARN::PowerMgr
