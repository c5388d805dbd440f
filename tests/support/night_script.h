#ifndef TESTS_NIGHT_SCRIPT_H
#define TESTS_NIGHT_SCRIPT_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "record.h"
#include "standby_config.h"

namespace TARN::Tests {

/// Tells a night step by step, then plays it through the real plugin library and gives back the record.
///
///     const Record record = Night().Device("plugged", "1").AdvanceTo("23:30").ScreenOff().PlayUntil("07:00");
///
/// A night is scripted and configures no strategy by name (but one that does not exist, since an empty list
/// switches all of them off) until it is told otherwise. JSON is passed as text.
class Night {
public:
    explicit Night(std::string zone = "UTC", const std::string& start = "2026-03-01T21:00:00");

    Night& Automatic() { return Host("mode", R"("automatic")"); }
    Night& WithRadioLedger() {
        policy_.hasRadioLedger = true;
        return *this;
    }
    Night& Strategies(std::string_view names) { return Host("strategies", names); }

    /// One key of the header's "host" or "device".
    Night& Host(const std::string& key, std::string_view json);
    Night& Device(const std::string& key, std::string_view json);

    /// Goes to the next moment at which the local clock shows this time: "23:30", "23:30:15" or "23:30:15.250".
    Night& AdvanceTo(const std::string& time);
    Night& AdvanceMs(int64_t ms);

    Night& Set(std::string_view facts) { return Step("set", facts); }
    Night& Fail(const std::string& operation, int32_t code = 1);
    Night& Heal(const std::string& operation);
    Night& Message(int32_t eventId, std::string_view want = "{}", const std::string& action = {});
    Night& MessageWithoutWant(int32_t eventId, const std::string& action = {});
    Night& Broadcast(const std::string& action, std::string_view want = "{}");
    Night& Dump(std::string_view words) { return Step("dump", words); }
    Night& Restart() { return Step("restart", R"("stop")"); }
    Night& Crash() { return Step("restart", R"("crash")"); }
    Night& File(const std::string& name, std::string_view jsonText);

    /// System events as the strategies come to hear of them: a broadcast that an automatic host hands on, a
    /// message to a scripted one.
    Night& ScreenOff() { return System("COMMON_EVENT_SCREEN_OFF"); }
    Night& ScreenOn() { return System("COMMON_EVENT_SCREEN_ON"); }
    Night& System(const std::string& action, std::string_view want = "{}");

    /// A scripted host's transitions.
    Night& GoFromTo(int32_t previousState, int32_t state);
    Night& EnterPhase(int32_t state, int32_t phase);
    Night& GoToDeepSleep() { return GoFromTo(2, 4).EnterPhase(4, 1); }
    Night& WakeUp() { return GoFromTo(4, 0); }
    /// The resource-control condition becomes another and the strategies hear of it.
    Night& ChangeCondition(int32_t condition);

    /// The trace itself, with an end at `endTime` if given.
    [[nodiscard]] std::string Text(const std::string& endTime = {}) const;

    /// Plays until the last step's time, or on.
    [[nodiscard]] Record Play() const { return PlayUntil({}); }
    [[nodiscard]] Record PlayUntil(const std::string& endTime) const;

private:
    Night& Step(std::string_view kind, std::string_view json);
    [[nodiscard]] int64_t Next(const std::string& time) const;

    std::string zone_;
    int64_t startMs_;
    int64_t nowMs_;
    std::map<std::string, std::string> host_;
    std::map<std::string, std::string> device_;
    std::vector<std::string> steps_;
    DevStandbyMgr::StandbyPolicy policy_;
};

/// Plays a trace given as text.
[[nodiscard]] Record PlayText(const std::string& trace, const DevStandbyMgr::StandbyPolicy& policy = {});

/// Where the plugin library lies.
[[nodiscard]] const char* PluginPath();

}  // namespace TARN::Tests

#endif  // TESTS_NIGHT_SCRIPT_H
