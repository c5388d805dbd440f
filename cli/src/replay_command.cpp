#include "replay_command.h"

#include <deque>
#include <vector>

#include "color.h"
#include "exit_status.h"
#include "inputs.h"
#include "jsonl_writer.h"
#include "night_reader.h"
#include "player.h"
#include "report.h"
#include "result_file.h"
#include "sides.h"
#include "timeline.h"
#include "trace_events.h"

namespace TARN::Cli {

namespace {

/// Plays one trace; each has its own memory of the phone.
void PlayOne(const Replay::Trace& trace, const Replay::PlayOptions& player, const ReplayOptions& options,
             OutputFile& output) {
    if (options.format == Format::JSONL) {
        Replay::JsonlWriter writer(output.Stream(), options.hasReasons);
        Replay::Play(trace, player, writer);
        return;
    }
    if (!options.traceEvents.empty()) {
        ResultFile file(options.traceEvents);
        Story::NightReader reader({.leastLog = options.log});
        Replay::Play(trace, player, reader);
        Story::WriteTraceEvents(reader.Result(), file.Stream());
        file.Finish();
        return;
    }
    Story::Timeline timeline(
        output.Stream(),
        {.isColored = IsColored(options.color, output), .isUnfolded = options.isUnfolded, .columns = output.Columns()});
    Story::NightReader reader({.leastLog = options.log, .view = &timeline});
    Replay::Play(trace, player, reader);
}

/// Plays one side or both and writes the page that shows them.
int RunReport(const ReplayOptions& options, Progress& progress) {
    const auto sides = ReadSides(options.names, progress);
    if (!sides) {
        return kInputWrong;
    }
    try {
        ResultFile file(options.report);
        std::deque<Story::NightReader> readers;
        std::vector<Story::ReportSide> shown;
        for (const Side& side : *sides) {
            const auto before = static_cast<double>(readers.size());
            auto& reader = readers.emplace_back(Story::ReadOptions{.leastLog = options.log});
            Replay::Play(side.trace,
                         {side.plugin,
                          [&](double fraction) {
                              progress.Show("playing", (before + fraction) / static_cast<double>(sides->size()));
                          }},
                         reader);
            shown.push_back({side.label, &reader.Result()});
        }
        Story::WriteReport(shown, file.Stream());
        file.Finish();
    } catch (const Replay::RunError& error) {
        progress.Erase();
        Complain(error.what());
        return kRunFailed;
    }
    return kDone;
}

}  // namespace

int RunReplay(const ReplayOptions& options, OutputFile& output) {
    Progress progress(!options.isProgressHidden);
    if (!options.report.empty()) {
        return RunReport(options, progress);
    }
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
            PlayOne(trace, player, options, output);
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
