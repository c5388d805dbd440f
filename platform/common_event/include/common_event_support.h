#ifndef PLATFORM_COMMON_EVENT_SUPPORT_H
#define PLATFORM_COMMON_EVENT_SUPPORT_H

#include <string_view>

namespace TARN::EventFwk {

/// The actions of the platform's own broadcasts.
class CommonEventSupport {
public:
    static constexpr std::string_view COMMON_EVENT_SCREEN_ON = "COMMON_EVENT_SCREEN_ON";
    static constexpr std::string_view COMMON_EVENT_SCREEN_OFF = "COMMON_EVENT_SCREEN_OFF";
    static constexpr std::string_view COMMON_EVENT_SCREEN_UNLOCKED = "COMMON_EVENT_SCREEN_UNLOCKED";
    static constexpr std::string_view COMMON_EVENT_CHARGING = "COMMON_EVENT_CHARGING";
    static constexpr std::string_view COMMON_EVENT_DISCHARGING = "COMMON_EVENT_DISCHARGING";
    static constexpr std::string_view COMMON_EVENT_POWER_SAVE_MODE_CHANGED = "COMMON_EVENT_POWER_SAVE_MODE_CHANGED";
    static constexpr std::string_view COMMON_EVENT_TIME_CHANGED = "COMMON_EVENT_TIME_CHANGED";
    static constexpr std::string_view COMMON_EVENT_TIMEZONE_CHANGED = "COMMON_EVENT_TIMEZONE_CHANGED";
};

}  // namespace TARN::EventFwk

#endif  // PLATFORM_COMMON_EVENT_SUPPORT_H
