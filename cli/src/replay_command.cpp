#include "replay_command.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "exit_status.h"
#include "inputs.h"
#include "jsonl_writer.h"
#include "player.h"
#include "timeline.h"

namespace TARN::Cli {

namespace {

bool IsColored(ColorChoice choice, const OutputFile& output) {
    if (choice != ColorChoice::AUTO) {
        return choice == ColorChoice::ALWAYS;
    }
    const char* plain = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return output.IsTerminal() && (plain == nullptr || *plain == '\0') && terminal != nullptr &&
           std::strcmp(terminal, "dumb") != 0;
}

/// A sink for one trace; each has its own memory of the phone.
std::unique_ptr<Replay::RecordSink> MakeSink(const ReplayOptions& options, OutputFile& output) {
    if (options.format == Format::JSONL) {
        return std::make_unique<Replay::JsonlWriter>(output.Stream());
    }
    return std::make_unique<Story::Timeline>(
        output.Stream(),
        Story::TimelineOptions{
            .isColored = IsColored(options.color, output), .isUnfolded = options.isUnfolded, .leastLog = options.log});
}

}  // namespace

int RunReplay(const ReplayOptions& options, OutputFile& output) {
    Progress progress(!options.isProgressHidden);
    auto traces =
        ReadInputs(options.names.traces, options.names.configs.empty() ? "" : options.names.configs.front(), progress);
    if (!traces) {
        return kInputWrong;
    }
    output.BeforeWriting([&progress] { progress.Erase(); });
    const double share = 1.0 / static_cast<double>(traces->size());
    double played = 0.0;
    Replay::PlayOptions player{options.names.plugins.front(),
                               [&](double fraction) { progress.Show("playing", (played + fraction) * share); }};
    try {
        for (const Replay::Trace& trace : *traces) {
            if (played > 0.0 && options.format == Format::TEXT) {
                output.Stream() << '\n';
            }
            Replay::Play(trace, player, *MakeSink(options, output));
            played += 1.0;
            if (output.IsBroken()) {
                break;
            }
        }
    } catch (const Replay::RunError& error) {
        output.Discard();
        progress.Erase();
        Complain(error.what());
        return kRunFailed;
    }
    progress.Erase();
    output.BeforeWriting(nullptr);
    return output.Finish();
}

}  // namespace TARN::Cli
