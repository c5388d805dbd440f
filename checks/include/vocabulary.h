#ifndef CHECKS_VOCABULARY_H
#define CHECKS_VOCABULARY_H

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace TARN::Checks {

// What host and plugin know by name. The plugin's names are not to be had from a header here; a test holds these lists
// against its sources and against what it subscribes to.

enum class MemberType : uint8_t { BOOL, INTEGER, FLOAT, STRING };

/// A member of a want that somebody asks for.
struct Member {
    std::string_view name;
    MemberType type;
    int64_t least = INT64_MIN;  ///< of an integer that means something
    int64_t most = INT64_MAX;
};

/// A message that somebody handles, with the members that they ask for.
struct KnownMessage {
    int32_t eventId;
    std::span<const Member> members;
};

[[nodiscard]] std::span<const KnownMessage> KnownMessages() noexcept;

/// The members of a broadcast that has some; empty for every other action.
[[nodiscard]] std::span<const Member> BroadcastMembers(std::string_view action) noexcept;

/// The broadcasts that the plugin's own listener hears, whatever the host does.
[[nodiscard]] std::span<const std::string_view> ListenerBroadcasts() noexcept;

/// All that somebody hears in automatic mode, and those that strategies match as COMMON_EVENT.
[[nodiscard]] std::vector<std::string_view> HeardBroadcasts();
[[nodiscard]] std::vector<std::string_view> MatchedActions();

/// Names in the host's configuration that somebody asks for.
inline constexpr std::string_view kParams[] = {"recover_netlimit_time"};
inline constexpr std::string_view kHalfHourSwitches[] = {"poweroff"};
inline constexpr std::string_view kPersistAllow[] = {"FREEZE"};
inline constexpr std::string_view kResCtrl[] = {"TIMER_ADJUST", "SLEEP_CLEAN", "POWER_SAVE_CLEAN"};

/// The system parameters that the plugin reads.
inline constexpr std::string_view kParameters[] = {"const.global.locale", "persist.sys.standby_ext_debug_on"};

/// The words of a dump that host or plugin compare with, but for digits.
inline constexpr std::string_view kDumpWords[] = {"DUMP_DETAIL_INFO",
                                                  "DUMP_STRATGY_DETAIL",
                                                  "DUMP_SIMULATE_SENSOR",
                                                  "DUMP_POWEROFF_STRATEGY",
                                                  "--restorectrlnetwork",
                                                  "--ctrlnetwork",
                                                  "-ST",
                                                  "--CollectSleepData",
                                                  "predict",
                                                  "--SendMessage",
                                                  "start",
                                                  "stop",
                                                  "--SetMode",
                                                  "step",
                                                  "force-idle",
                                                  "light",
                                                  "deep",
                                                  "unforce"};

/// Keywords in the settings tables, of the phone and of an account.
inline constexpr std::string_view kPhoneSettings[] = {"nearestAlarmingTime", "settings.telephony.airplanemode"};
inline constexpr std::string_view kAccountSettings[] = {"user_setup_complete"};

}  // namespace TARN::Checks

#endif  // CHECKS_VOCABULARY_H
