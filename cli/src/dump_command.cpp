#include "dump_command.h"

#include <algorithm>
#include <utility>

#include "exit_status.h"
#include "inputs.h"
#include "json_fields.h"
#include "player.h"
#include "record_sink.h"
#include "standby_constants.h"
#include "time_argument.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;
using Replay::Trace;

/// Keeps the last dump of a run and nothing else.
class LastDump : public Replay::RecordSink {
public:
    [[nodiscard]] const std::string& Text() const noexcept { return text_; }

    [[nodiscard]] bool WantsLog(LogLevel /*level*/) const noexcept override { return false; }
    void OnBegin(const Trace& /*trace*/) override {}
    void OnStep(const Replay::Step& /*step*/) override {}
    void OnLog(int64_t /*t*/, const LogLine& /*line*/) override {}
    void OnCall(int64_t /*t*/, std::string_view /*operation*/, const nlohmann::ordered_json& /*arguments*/,
                const nlohmann::ordered_json& /*result*/) override {}
    void OnDeliver(int64_t /*t*/, const DevStandbyMgr::StandbyMessage& /*message*/) override {}
    void OnDump(int64_t /*t*/, const std::string& text) override { text_ = text; }
    void OnEnd(int64_t /*t*/, const Replay::Summary& /*summary*/) override {}

private:
    std::string text_;
};

/// Cuts the trace behind all that happens up to `t`, and ends it with a dump.
void EndWithDump(Trace& trace, int64_t t, std::vector<std::string> words) {
    trace.steps.erase(std::upper_bound(trace.steps.begin(), trace.steps.end(), t,
                                       [](int64_t time, const Replay::Step& step) { return time < step.t; }),
                      trace.steps.end());
    // A dump acts before the work that is due at its own millisecond; the next one sees all of it done.
    trace.end = t + 1;
    trace.steps.push_back({trace.end, Replay::DumpStep{std::move(words)}});
}

}  // namespace

int RunDump(const DumpOptions& options, OutputFile& output) {
    Progress progress(!options.player.isProgressHidden);
    auto traces = ReadInputs({options.trace}, options.player.config, progress);
    if (!traces) {
        return kInputWrong;
    }
    Trace& trace = traces->front();
    std::vector<std::string> words = options.words;
    if (words.empty()) {
        words = {std::string(DevStandbyMgr::DUMP_DETAIL_INFO), std::string(DevStandbyMgr::DUMP_STRATGY_DETAIL)};
    }
    LastDump dump;
    try {
        EndWithDump(trace, options.at.empty() ? trace.end : ReadTimeArgument("--at", options.at, trace),
                    std::move(words));
        Replay::Play(trace, {options.player.plugin, [&](double fraction) { progress.Show("playing", fraction); }},
                     dump);
    } catch (const InputError& error) {
        Complain(error.what());
        return kInputWrong;
    } catch (const Replay::RunError& error) {
        progress.Erase();
        Complain(error.what());
        return kRunFailed;
    }
    progress.Erase();
    output.Stream() << dump.Text();
    if (!dump.Text().empty() && dump.Text().back() != '\n') {
        output.Stream() << '\n';
    }
    return output.Finish();
}

}  // namespace TARN::Cli
