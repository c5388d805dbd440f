#include "replay_command.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "color.h"
#include "exit_status.h"
#include "inputs.h"
#include "json_fields.h"
#include "jsonl_writer.h"
#include "night_reader.h"
#include "night_row.h"
#include "player.h"
#include "progress.h"
#include "report.h"
#include "result_file.h"
#include "sides.h"
#include "slip_watch.h"
#include "timeline.h"
#include "trace_events.h"
#include "trace_names.h"
#include "worker_pool.h"

namespace TARN::Cli {

namespace {

enum class Format : uint8_t { TEXT, JSONL, SUMMARY, CSV };

constexpr std::array kFormats = {Word<Format>{"text", Format::TEXT}, Word<Format>{"jsonl", Format::JSONL},
                                 Word<Format>{"summary", Format::SUMMARY}, Word<Format>{"csv", Format::CSV}};
constexpr std::array kLevels = {Word<LogLevel>{"debug", LogLevel::DEBUG}, Word<LogLevel>{"info", LogLevel::INFO},
                                Word<LogLevel>{"warn", LogLevel::WARN}, Word<LogLevel>{"warning", LogLevel::WARN},
                                Word<LogLevel>{"error", LogLevel::ERROR}};

struct ReplayOptions {
    ManyTraces many;
    SideNames names;  ///< configurations and plugins; without a report at most one of each
    Format format = Format::TEXT;
    ColorChoice color = ColorChoice::AUTO;
    std::optional<LogLevel> log;  ///< the least level of the plugin's log shown in the timeline
    bool isUnfolded = false;
    std::string report;       ///< the file for the page that shows the night, or two; empty: none is asked for
    std::string phoneFiles;   ///< the folder for the phone's own files; empty: in memory
    std::string traceEvents;  ///< the file for the one trace's night as trace events; empty: none is asked for
    bool hasReasons = false;  ///< the full record has the host's own reasons too
    bool isNamed = false;     ///< each line of the record says of which trace it is
    bool isStrict = false;    ///< a slip is an error
    bool isProgressHidden = false;

    [[nodiscard]] std::string Config() const { return names.configs.empty() ? "" : names.configs.front(); }
};

constexpr char kReplayFooter[] =
    "The file given with --config is a JSON object with the keys of a trace's \"host\", and \"policy\";\n"
    "what it names replaces what the traces say.\n";

using Report = std::function<void(double fraction)>;

/// Reads a trace; its slips are its own, whatever is laid over it.
PlayableTrace ReadLaidOver(const std::string& name, const ConfigFile& config, SlipWatch& slips) {
    PlayableTrace trace = slips.Read(name);
    if (config) {
        config->LayOver(trace.Head().host);
    }
    return trace;
}

/// Plays one trace and tells it on a stream.
void PlayOne(PlayableTrace trace, const ReplayOptions& options, const Story::TimelineOptions& style,
             std::ostream& output, const Report& progress = nullptr) {
    const Replay::PlayOptions player{options.names.plugins.front(), progress, options.phoneFiles};
    if (options.format == Format::JSONL) {
        Replay::JsonlWriter writer(output, options.hasReasons, options.isNamed ? trace.Head().name : "");
        trace.Play(player, writer);
        return;
    }
    if (options.format != Format::TEXT) {
        Story::NightReader reader({.leastLog = std::nullopt, .isKept = false});
        trace.Play(player, reader);
        const auto row = Story::RowOf(reader.Result());
        output << (options.format == Format::SUMMARY ? Story::ToJsonLine(row) : Story::ToCsvLine(row)) << '\n';
        return;
    }
    Story::Timeline timeline(output, style);
    Story::NightReader reader({.leastLog = options.log, .view = &timeline, .isKept = false});
    trace.Play(player, reader);
}

/// Plays one trace and writes its trace events.
int RunTraceEvents(const ReplayOptions& options, SlipWatch& slips, Progress& progress) {
    PlayableTrace trace = ReadLaidOver(options.many.names.front(), ReadConfig(options.Config(), slips), slips);
    ResultFile file(options.traceEvents);
    Story::NightReader reader({.leastLog = options.log});
    trace.Play({options.names.plugins.front(), [&](double fraction) { progress.Show("playing", fraction); }}, reader);
    Story::WriteTraceEvents(reader.Result(), file.Stream());
    file.Finish();
    return kDone;
}

/// Plays one side or both and writes the page that shows them.
int RunReport(const ReplayOptions& options, SlipWatch& slips, Progress& progress) {
    const std::vector<Side> sides =
        ReadSides({options.many.names, options.names.configs, options.names.plugins}, slips);
    ResultFile file(options.report);
    std::deque<Story::NightReader> readers;
    std::vector<Story::ReportSide> shown;
    const Story::ReadOptions reading{.leastLog = options.log};
    for (const Side& side : sides) {
        const auto before = static_cast<double>(readers.size());
        Story::NightReader& reader = readers.emplace_back(reading);
        Replay::Play(side.trace,
                     {side.plugin,
                      [&](double fraction) {
                          progress.Show("playing", (before + fraction) / static_cast<double>(sides.size()));
                      }},
                     reader);
        shown.push_back({side.label, &reader.Result()});
    }
    Story::WriteReport(shown, file.Stream());
    file.Finish();
    return kDone;
}

int RunReplay(ReplayOptions options, OutputFile& output) {
    Progress progress(!options.isProgressHidden);
    SlipWatch slips(options.isStrict, [&progress](const std::string& line) {
        progress.Erase();
        Complain(line);
    });
    if (!options.report.empty()) {
        return RunReport(options, slips, progress);
    }
    if (!options.traceEvents.empty()) {
        return RunTraceEvents(options, slips, progress);
    }
    TraceNames names(options.many.names, options.many.list);
    if (!options.phoneFiles.empty() && names.AreMany()) {
        throw DevStandbyMgr::InputError("--phone-files takes one trace");
    }
    const Story::TimelineOptions style{
        .isColored = IsColored(options.color, output), .isUnfolded = options.isUnfolded, .columns = output.Columns()};
    output.BeforeWriting([&progress] { progress.Erase(); });
    const ConfigFile config = ReadConfig(options.Config(), slips);
    if (options.format == Format::CSV) {
        output.Stream() << Story::CsvHead() << '\n';
    }
    if (!names.AreMany()) {
        PlayOne(ReadLaidOver(options.many.names.front(), config, slips), options, style, output.Stream(),
                [&](double fraction) { progress.Show("playing", fraction); });
        progress.Erase();
        return output.Finish();
    }
    options.isNamed = true;
    bool isSeparated = false;
    WorkerPool pool(
        options.many.jobs,
        [&](const std::string& name, std::ostream& result, const WorkerPool::Note& note) {
            SlipWatch own(options.isStrict, note);
            PlayOne(ReadLaidOver(name, config, own), options, style, result);
        },
        [&](const std::string& /*name*/, std::string_view piece, bool isFirst) {
            if (isFirst && std::exchange(isSeparated, true) && options.format == Format::TEXT) {
                output.Stream() << '\n';
            }
            output.Stream() << piece;
            return !output.IsBroken();
        },
        [&](size_t done, size_t known) {
            progress.Show("playing", static_cast<double>(done) / static_cast<double>(known));
        });
    const int status = pool.Run(names);
    progress.Erase();
    return std::max(output.Finish(), status);
}

/// Throws when a replay cannot be done as asked.
void Check(const ReplayOptions& options) {
    if (options.hasReasons && options.format != Format::JSONL) {
        throw CLI::ValidationError("--reasons goes with --format jsonl");
    }
    CheckNamed(options.many);
    const bool isForFile = !options.report.empty() || !options.traceEvents.empty();
    if (options.report.empty() && (options.names.configs.size() > 1 || options.names.plugins.size() > 1)) {
        throw CLI::ValidationError("--config and --plugin are named once here; twice with --report");
    }
    const bool isTold = options.format == Format::TEXT && !isForFile;
    if (options.isUnfolded && !isTold) {
        throw CLI::ValidationError("--unfold goes with a timeline, --format text");
    }
    if (options.color == ColorChoice::ALWAYS && !isTold) {
        throw CLI::ValidationError("--color always goes with a timeline, --format text");
    }
    if (options.log && options.format != Format::TEXT) {
        throw CLI::ValidationError("--log goes with --format text, --report or --trace-events");
    }
    if (isForFile && (options.format != Format::TEXT || options.report.empty() == options.traceEvents.empty())) {
        throw CLI::ValidationError("--report, --trace-events and --format each need a run of their own");
    }
    if (isForFile && !options.phoneFiles.empty()) {
        throw CLI::ValidationError("--phone-files does not go with --report or --trace-events");
    }
    if (!options.traceEvents.empty() && options.many.names.size() > 1) {
        throw CLI::ValidationError("--trace-events takes one trace");
    }
    if (isForFile && !options.many.list.empty()) {
        throw CLI::ValidationError("--report and --trace-events take traces that are named");
    }
}

}  // namespace

void AddReplay(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<ReplayOptions>();
    ReplayOptions& options = *shared;
    CLI::App& command = *app.add_subcommand("replay", "Play traces; tell what happened and why");
    command.footer(kReplayFooter);
    AddManyTraces(command, options.many);
    AddChoice(command, "--format", "FORMAT", kFormats, options.format,
              "text, a timeline for people (default); jsonl, the full record; summary or csv, a line a trace with what "
              "it amounted to");
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
    command
        .add_option("--phone-files", options.phoneFiles,
                    "Keep the phone's own files below this folder instead of in memory, and begin with those in it")
        ->type_name("DIR");
    command.add_flag("--reasons", options.hasReasons, "With --format jsonl: the host's own reasons too");
    AddStrict(command, options.isStrict);
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
