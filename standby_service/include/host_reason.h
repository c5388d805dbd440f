#ifndef STANDBY_SERVICE_HOST_REASON_H
#define STANDBY_SERVICE_HOST_REASON_H

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace TARN::DevStandbyMgr {

/// What made the state manager look at the state of the phone.
enum class StateCause : uint8_t {
    START,             ///< the service starts, its screen off or not told yet
    SCREEN_ON,         ///< the screen went on
    SCREEN_OFF,        ///< the screen went off
    CHARGING,          ///< a charger was plugged in, told by broadcast
    DISCHARGING,       ///< it was unplugged, told by broadcast
    MOVED,             ///< the phone left stillness
    TIME,              ///< the time of a step is over
    MAINTENANCE_DUE,   ///< deep standby lasted as long as it may
    MAINTENANCE_OVER,  ///< the maintenance lasted as long as it may
    UNBLOCKED,         ///< the state was blocked and is free again
    ASKED,             ///< somebody asked for a state
};

/// A cause as programs write it: "screen_on".
[[nodiscard]] std::string_view CauseName(StateCause cause) noexcept;

/// One condition of a step, as it was found.
struct ConditionFound {
    std::string name;  ///< "still", "unplugged", "screen off", "not blocked"
    bool isMet = false;
    std::string found;  ///< what the phone answered: "moving", "plugged type 1", "no answer, counts as still"
};

/// The state changed, or was looked at and stayed as it was: `from` equals `to`.
struct StateReason {
    StateCause cause = StateCause::ASKED;
    uint32_t from = 0;
    uint32_t to = 0;
    uint32_t target = 0;                     ///< the state that was tried for; `to` where it was reached
    std::vector<ConditionFound> conditions;  ///< those that were asked, in order; the first unmet one decided
    int64_t nextTryMs = -1;                  ///< wall clock at which it is looked at again; -1: nothing is planned
};

/// What the service asks of the phone and of its own lists, bits of what was not answered.
namespace Question {
inline constexpr uint8_t APPLICATIONS = 0x01;
inline constexpr uint8_t SYSTEM = 0x02;  ///< which of the applications belong to the system
inline constexpr uint8_t ALLOW_LIST = 0x04;
inline constexpr uint8_t RESTRICT_SET = 0x08;
inline constexpr uint8_t TASKS = 0x10;
inline constexpr uint8_t FOREGROUND = 0x20;
inline constexpr uint8_t NATIVES = 0x40;
}  // namespace Question

/// Questions as people read them: "the continuous tasks, the foreground applications"; empty for none.
[[nodiscard]] std::string DescribeQuestions(uint8_t questions);

/// How one application or native stands with a limit.
struct AppVerdict {
    int32_t uid = -1;
    int32_t pid = -1;  ///< -1 where the limit goes by uid
    std::string name;
    uint8_t exemptionFlags = 0;  ///< bits of ExemptionFlag
    bool isExempt = false;       ///< the firewall lets it through; its running locks count

    friend bool operator==(const AppVerdict&, const AppVerdict&) = default;
};

/// Whom the firewall lets through, as derived just now. Told when the answer differs from the one before. An
/// application whose flags would exempt it and that is not exempt all the same: its flags are not enough at this time.
struct FirewallReason {
    /// By the rule of deep standby, else by that of the user's sleep. Where `apps` could not be derived: by whose rule
    /// it was tried.
    bool isDeepStandby = false;
    /// What could not be found out, as DescribeQuestions says it. Then `apps` is empty, and nothing changes, or
    /// goes by what was known before.
    std::string failedQuestion;
    std::vector<AppVerdict> apps;  ///< by uid

    friend bool operator==(const FirewallReason&, const FirewallReason&) = default;
};

/// Whose running locks are to count, as derived just now. Told when the answer differs from the one before.
struct RunningLockReason {
    bool isProxying = false;     ///< the others' are proxied at this time
    std::string failedQuestion;  ///< as above
    /// Applications' processes by pid and uid, then the natives that the allow list names, without their pid; of other
    /// natives nothing is said.
    std::vector<AppVerdict> apps;

    friend bool operator==(const RunningLockReason&, const RunningLockReason&) = default;
};

/// Why the service decided as it did: facts for whoever has to explain them, not sentences.
using HostReason = std::variant<StateReason, FirewallReason, RunningLockReason>;

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_HOST_REASON_H
