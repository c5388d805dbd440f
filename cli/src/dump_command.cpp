#include "dump_command.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "exit_status.h"
#include "inputs.h"
#include "json_fields.h"
#include "player.h"
#include "progress.h"
#include "silent_sink.h"
#include "standby_constants.h"
#include "time_argument.h"

namespace TARN::Cli {

namespace {

using Replay::Trace;

struct DumpOptions {
    PlayerOptions player;
    std::string trace;
    std::string at;  ///< as ReadTimeArgument takes it; empty for the end
    std::vector<std::string> words;
};

constexpr char kDumpFooter[] =
    "Words:\n"
    "  DUMP_DETAIL_INFO DUMP_STRATGY_DETAIL  every detail of host and strategies; also without words\n"
    "  step, force-idle [light|deep], unforce\n"
    "                                        move an automatic host by hand\n"
    "  . DUMP_POWEROFF_STRATEGY              switch Bluetooth off without asking whether that may be\n"
    "  . --ctrlnetwork, . --restorectrlnetwork\n"
    "                                        tell listeners that the network is limited, or no longer\n"
    "  DUMP_SIMULATE_SENSOR DUMP_STRATGY_DETAIL -ST ...\n"
    "    --CollectSleepData predict          take a reading of the sleep detector's sensors and decide by it\n"
    "    --SendMessage start|stop            say that the user fell asleep, or woke\n"
    "    --SetMode 1|0                       take no readings any more, or again\n"
    "A dot is any word. A word that begins with a dash goes behind two dashes:\n"
    "  standby dump night.jsonl -- DUMP_SIMULATE_SENSOR DUMP_STRATGY_DETAIL -ST --SetMode 1\n";

/// Throws when one of the words is rather another trace.
void CheckWords(const DumpOptions& options) {
    for (const std::string& word : options.words) {
        std::error_code error;
        if (word.ends_with(".jsonl") || word.ends_with(".jsonl.gz") || std::filesystem::is_regular_file(word, error)) {
            throw DevStandbyMgr::InputError("dump takes one trace, " + options.trace + "; " + word +
                                            " is another file and no word of a dump");
        }
    }
}

/// Keeps the last dump of a run and nothing else.
class LastDump : public Replay::SilentSink {
public:
    [[nodiscard]] const std::string& Text() const noexcept { return text_; }

    void OnDump(int64_t /*t*/, const std::string& text) override { text_ = text; }

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

int RunDump(const DumpOptions& options, OutputFile& output) {
    Progress progress(!options.player.isProgressHidden);
    Trace trace = ReadInput(options.trace, options.player.config);
    std::vector<std::string> words = options.words;
    if (words.empty()) {
        words = {std::string(DevStandbyMgr::DUMP_DETAIL_INFO), std::string(DevStandbyMgr::DUMP_STRATGY_DETAIL)};
    }
    LastDump dump;
    EndWithDump(trace, options.at.empty() ? trace.end : ReadTimeArgument("--at", options.at, trace), std::move(words));
    Replay::Play(trace, {options.player.plugin, [&](double fraction) { progress.Show("playing", fraction); }}, dump);
    progress.Erase();
    output.Stream() << dump.Text();
    if (!dump.Text().empty() && dump.Text().back() != '\n') {
        output.Stream() << '\n';
    }
    return output.Finish();
}

}  // namespace

void AddDump(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<DumpOptions>();
    DumpOptions& options = *shared;
    CLI::App& command = *app.add_subcommand("dump", "Play a trace up to a time; print the strategies' dump");
    command.footer(kDumpFooter);
    AddTrace(command, options.trace, "The trace to play, - for standard input").required();
    CLI::Option* words =
        command.add_option("WORD", options.words, "The dump's words (default DUMP_DETAIL_INFO DUMP_STRATGY_DETAIL)");
    words->type_name("");
    using namespace DevStandbyMgr;
    NameWords(*words, {std::string(DUMP_DETAIL_INFO), std::string(DUMP_STRATGY_DETAIL),
                       std::string(DUMP_SIMULATE_SENSOR), std::string(DUMP_POWEROFF_STRATEGY)});
    AddAt(command, options.at, " (default the end)");
    AddPlayerOptions(command, options.player);
    command.callback([shared, &action] {
        CheckWords(*shared);
        action = [shared](OutputFile& output) { return RunDump(*shared, output); };
    });
}

}  // namespace TARN::Cli
