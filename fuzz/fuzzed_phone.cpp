#include "fuzzed_phone.h"

#include <dlfcn.h>

#include <cstdlib>
#include <utility>

#include "common_event_support.h"
#include "session.h"
#include "silent_sink.h"
#include "standby_constants.h"

namespace TARN::Fuzz {

namespace {

constexpr int64_t kEveningMs = 1'772'398'800'000;  ///< 2026-03-01 21:00

/// Wants everything and keeps nothing.
class ForgetfulSink : public Replay::SilentSink {
public:
    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    [[nodiscard]] bool WantsCall(std::string_view /*operation*/) const noexcept override { return true; }
    [[nodiscard]] bool WantsReasons() const noexcept override { return true; }
};

/// Loads the plugin for good: the fuzzer reads the counters in it until the process ends.
void PinPlugin() {
    static const void* const plugin = ::dlopen(PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
    if (plugin == nullptr) {
        std::abort();
    }
}

}  // namespace

Replay::Trace Evening(int64_t lengthMs) {
    Replay::Trace trace;
    trace.name = "evening";
    trace.start = kEveningMs;
    trace.end = kEveningMs + lengthMs;
    trace.bootNs = kHourMs * 1'000'000;
    trace.host.persistAllow["FREEZE"][1] = {"camera_service"};
    trace.device.phone.processes = {{410, 1000, "camera_service", {}, true, true, false},
                                    {417, 1001, "audio_server", {}, true, true, false},
                                    {2100, 20010000, "com.tarn.clock", {"com.tarn.clock"}, false, true, false},
                                    {2152, 20010004, "com.example.mail", {"com.example.mail"}, false, false, true}};
    return trace;
}

Replay::BroadcastStep Broadcast(std::string_view action) {
    return {AAFwk::Want().SetAction(std::string(action))};
}

void Play(const Replay::Trace& trace) {
    PinPlugin();
    ForgetfulSink sink;
    Replay::Session session(trace, PLUGIN_PATH, sink);
    for (const Replay::Step& step : trace.steps) {
        session.Do(step);
    }
    session.Finish(trace.end);
}

void PlayWithFile(const std::string& name, std::string text) {
    using namespace DevStandbyMgr;
    using EventFwk::CommonEventSupport;
    const auto broadcast = [](std::string_view action) {
        return Replay::MessageStep{StandbyMessage(StandbyMessageType::COMMON_EVENT, std::string(action))};
    };
    AAFwk::Want isDue;
    isDue.SetParam(SCR_OFF_HALF_HOUR_STATUS, true);

    Replay::Trace trace = Evening(kMinuteMs);
    trace.host.mode = HostMode::SCRIPTED;
    AddStep(trace, 0, Replay::FileStep{name, std::move(text)});
    AddStep(trace, 0, Replay::RestartStep{.isCrash = true});
    AddStep(trace, 0, broadcast(CommonEventSupport::COMMON_EVENT_SCREEN_OFF));
    AddStep(trace, 0, Replay::MessageStep{StandbyMessage(StandbyMessageType::SCREEN_OFF_HALF_HOUR, {}, isDue)});
    AddStep(trace, kMinuteMs, broadcast(CommonEventSupport::COMMON_EVENT_SCREEN_ON));
    Play(trace);
}

}  // namespace TARN::Fuzz
