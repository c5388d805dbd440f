#include "replay_command.h"

#include <deque>
#include <memory>
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

enum class Format : uint8_t { TEXT, JSONL };

constexpr std::array kFormats = {Word<Format>{"text", Format::TEXT}, Word<Format>{"jsonl", Format::JSONL}};
constexpr std::array kLevels = {Word<LogLevel>{"debug", LogLevel::DEBUG}, Word<LogLevel>{"info", LogLevel::INFO},
                                Word<LogLevel>{"warn", LogLevel::WARN}, Word<LogLevel>{"error", LogLevel::ERROR}};

struct ReplayOptions {
    SideNames names;  ///< without a report any number of traces, at most one configuration, one plugin
    Format format = Format::TEXT;
    ColorChoice color = ColorChoice::AUTO;
    std::optional<LogLevel> log;  ///< the least level of the plugin's log shown in the timeline
    bool isUnfolded = false;
    std::string report;       ///< the file for the page that shows the night, or two; empty: none is asked for
    std::string traceEvents;  ///< the file for the one trace's night as trace events; empty: none is asked for
    bool hasReasons = false;  ///< the full record has the host's own reasons too
    bool isProgressHidden = false;
};

constexpr char kReplayFooter[] =
    "The file given with --config is a JSON object with the keys of a trace's \"host\", and \"policy\";\n"
    "what it names replaces what the traces say.\n";

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

/// Throws when a replay cannot be done as asked.
void Check(const ReplayOptions& options) {
    if (options.hasReasons && options.format != Format::JSONL) {
        throw CLI::ValidationError("--reasons goes with --format jsonl");
    }
    const bool isForFile = !options.report.empty() || !options.traceEvents.empty();
    if (options.report.empty() && (options.names.configs.size() > 1 || options.names.plugins.size() > 1)) {
        throw CLI::ValidationError("--config and --plugin are named once here; twice with --report");
    }
    if (isForFile && (options.format == Format::JSONL || options.report.empty() == options.traceEvents.empty())) {
        throw CLI::ValidationError("--report, --trace-events and --format jsonl each need a run of their own");
    }
    if (!options.traceEvents.empty() && options.names.traces.size() > 1) {
        throw CLI::ValidationError("--trace-events takes one trace");
    }
}

}  // namespace

void AddReplay(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<ReplayOptions>();
    ReplayOptions& options = *shared;
    CLI::App& command = *app.add_subcommand("replay", "Play traces; tell what happened and why");
    command.footer(kReplayFooter);
    command.add_option("TRACE", options.names.traces, "Traces to play, - for standard input")
        ->required()
        ->type_name("");
    AddChoice(command, "--format", "FORMAT", kFormats, options.format,
              "text, a timeline for people (default), or jsonl, the full record");
    AddChoice(command, "--log", "LEVEL", kLevels, options.log,
              "Show the plugin's log in the timeline from this level on: debug, info, warn, error");
    AddColor(command, options.color);
    command.add_flag("--unfold", options.isUnfolded, "Tell every screen-on, also where the phone is merely used");
    command
        .add_option("--report", options.report,
                    "Write a page for a browser that shows the night, or two under each other, instead of telling it")
        ->type_name("FILE");
    command
        .add_option("--trace-events", options.traceEvents,
                    "Write the night as trace events, for a viewer such as Perfetto's, instead of telling it")
        ->type_name("FILE");
    command.add_flag("--reasons", options.hasReasons, "With --format jsonl: the host's own reasons too");
    AddSideOptions(command, options.names, options.isProgressHidden);
    command.callback([shared, &action] {
        Check(*shared);
        if (shared->names.plugins.empty()) {
            shared->names.plugins = {DefaultPlugin()};
        }
        action = [shared](OutputFile& output) { return RunReplay(*shared, output); };
    });
}

}  // namespace TARN::Cli
