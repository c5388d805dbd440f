#pragma once

#include <string>

namespace TARN::EventFwk {
class CommonEventSupport {
public:
    static const std::string COMMON_EVENT_SCREEN_ON;
    static const std::string COMMON_EVENT_SCREEN_OFF;
    static const std::string COMMON_EVENT_SCREEN_UNLOCKED;
    static const std::string COMMON_EVENT_CHARGING;
    static const std::string COMMON_EVENT_DISCHARGING;
    static const std::string COMMON_EVENT_POWER_SAVE_MODE_CHANGED;
};
}  // namespace TARN::EventFwk
