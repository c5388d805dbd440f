#include "command_line.h"

#include <array>
#include <CLI/CLI.hpp>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace TARN::Cli {

namespace {

constexpr char kAbout[] =
    "Plays recorded nights of a phone through the standby service and its plugin, in virtual time,\n"
    "and tells what the plugin did and why.\n";

constexpr char kExitStatuses[] =
    "Exit status:\n"
    "  0  done\n"
    "  1  the run failed: the plugin does not load, the output cannot be written\n"
    "  2  the input is wrong: a trace, the configuration, the command line\n"
    "diff answers as diff does: 0 the same, 1 different, 2 trouble\n";

constexpr char kExamples[] =
    "Examples:\n"
    "  standby replay night.jsonl                     the night at a glance\n"
    "  standby replay --log info night.jsonl          ... with the plugin's own log inside\n"
    "  standby replay --format jsonl night.jsonl      the full record, for programs\n"
    "  standby replay --config try.json nights/*      one change against many nights\n"
    "  standby replay --report night.html night.jsonl a page that shows it, for a browser\n"
    "  standby why night.jsonl --at 02:13             why it is as it is at that time\n"
    "  standby dump night.jsonl --at 02:13            the strategies' own words\n"
    "  standby diff night.jsonl --config try.json     what a change of the configuration changes\n"
    "  standby shell                                  a prompt on a simulated phone\n\n";

constexpr char kReplayFooter[] =
    "The file given with --config is a JSON object with the keys of a trace's \"host\", and \"policy\";\n"
    "what it names replaces what the traces say.\n";

constexpr char kAtAbout[] = "A time of day, a local time, +2h10m after the start, milliseconds";

constexpr char kWhyFooter[] =
    "Examples:\n"
    "  standby why night.jsonl --at 02:13                      everything, a line or two each\n"
    "  standby why night.jsonl --at 01:30 --about bluetooth    ... and what led to it\n"
    "  standby why night.jsonl --at 02:13 --app com.example.music\n";

constexpr char kDumpFooter[] =
    "A word that begins with a dash goes behind two dashes:\n"
    "  standby dump night.jsonl -- DUMP_SIMULATE_SENSOR DUMP_STRATGY_DETAIL -ST --SetMode 1\n";

constexpr char kDiffFooter[] =
    "A and B are records, as replay --format jsonl writes them, or traces, which are played. One trace is held\n"
    "against itself under another configuration or plugin:\n"
    "  standby diff night.jsonl --config try.json               as the trace has it, and with try.json\n"
    "  standby diff night.jsonl --config a.json --config b.json\n"
    "  standby diff night.jsonl --plugin OTHER.so               the plugin built with this program, and another\n"
    "  standby diff night.jsonl night.record                    whether a trace still plays as it was recorded\n"
    "Exit status: 0 the same, 1 different, 2 trouble.\n";

constexpr char kShellFooter[] =
    "Without a trace it is an ordinary phone at 21:00 of today, in the zone of TZ, else in UTC.\n"
    "From a pipe each line is a command; one that is wrong is told on standard error with its line's\n"
    "number, and the exit status is 2 in the end. The word help tells the commands.\n";

/// The plugin as it is built and installed: in lib beside the bin that holds this program.
std::string DefaultPlugin() {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    return (self.parent_path().parent_path() / "lib" / "libphone_standby.so").string();
}

/// The words that an option knows, with what they stand for.
template <class T>
struct Word {
    std::string_view word;
    T meaning;
};

constexpr std::array kFormats = {Word<Format>{"text", Format::TEXT}, Word<Format>{"jsonl", Format::JSONL}};
constexpr std::array kAnswerFormats = {Word<AnswerFormat>{"text", AnswerFormat::TEXT},
                                       Word<AnswerFormat>{"json", AnswerFormat::JSON}};
constexpr std::array kColors = {Word<ColorChoice>{"auto", ColorChoice::AUTO},
                                Word<ColorChoice>{"always", ColorChoice::ALWAYS},
                                Word<ColorChoice>{"never", ColorChoice::NEVER}};
constexpr std::array kLevels = {Word<LogLevel>{"debug", LogLevel::DEBUG}, Word<LogLevel>{"info", LogLevel::INFO},
                                Word<LogLevel>{"warn", LogLevel::WARN}, Word<LogLevel>{"error", LogLevel::ERROR}};

/// An option that takes one of `words`.
template <class Words, class Target>
void AddChoice(CLI::App& command, const std::string& name, const std::string& placeholder, const Words& words,
               Target& target, const std::string& about) {
    command
        .add_option_function<std::string>(
            name,
            [name, &words, &target](const std::string& word) {
                std::string known;
                for (const auto& one : words) {
                    if (one.word == word) {
                        target = one.meaning;
                        return;
                    }
                    known.append(known.empty() ? "" : ", ").append(one.word);
                }
                throw CLI::ValidationError(name, word + "; expected one of " + known);
            },
            about)
        ->type_name(placeholder);
}

void AddPlayed(CLI::App& command, std::string& plugin, std::string& config) {
    command.add_option("--plugin", plugin, "The plugin to load; else the one built with this program")
        ->type_name("FILE");
    command.add_option("--config", config, "Host configuration that overrides the traces' own")->type_name("FILE");
}

void AddPlayerOptions(CLI::App& command, PlayerOptions& options) {
    AddPlayed(command, options.plugin, options.config);
    command.add_flag("--no-progress", options.isProgressHidden, "Show no progress on the terminal");
}

/// The player's options of a command that plays one run or holds two against each other.
void AddSideOptions(CLI::App& command, SideNames& names, bool& isProgressHidden) {
    const auto add = [&command](const char* name, std::vector<std::string>& target, const char* about) {
        command.add_option(name, target, about)->type_name("FILE")->type_size(1)->allow_extra_args(false);
    };
    add("--plugin", names.plugins,
        "The plugin to load, else the one built with this program; twice: one for each side");
    add("--config", names.configs, "Host configuration that overrides the traces' own; twice: one for each side");
    command.add_flag("--no-progress", isProgressHidden, "Show no progress on the terminal");
}

void AddReplay(CLI::App& app, ReplayOptions& options) {
    CLI::App& command = *app.add_subcommand("replay", "Play traces; tell what happened and why");
    command.footer(kReplayFooter);
    command.add_option("TRACE", options.names.traces, "Traces to play, - for standard input")
        ->required()
        ->type_name("");
    AddChoice(command, "--format", "FORMAT", kFormats, options.format,
              "text, a timeline for people (default), or jsonl, the full record");
    AddChoice(command, "--log", "LEVEL", kLevels, options.log,
              "Show the plugin's log in the timeline from this level on: debug, info, warn, error");
    AddChoice(command, "--color", "WHEN", kColors, options.color, "auto (default), always, never");
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
}

void AddDump(CLI::App& app, DumpOptions& options) {
    CLI::App& command = *app.add_subcommand("dump", "Play a trace up to a time; print the strategies' dump");
    command.footer(kDumpFooter);
    command.add_option("TRACE", options.trace, "The trace to play, - for standard input")->required()->type_name("");
    command.add_option("WORD", options.words, "The dump's words (default DUMP_DETAIL_INFO DUMP_STRATGY_DETAIL)")
        ->type_name("");
    command
        .add_option("--at", options.at,
                    "A time of day, a local time, +2h10m after the start, milliseconds (default the end)")
        ->type_name("TIME");
    AddPlayerOptions(command, options.player);
}

void AddDiff(CLI::App& app, DiffOptions& options) {
    CLI::App& command = *app.add_subcommand("diff", "Hold two runs against each other; tell where they part");
    command.footer(kDiffFooter);
    const auto add = [&](const char* name, const char* about) {
        const auto keep = [&options](const std::string& file) { options.names.traces.push_back(file); };
        return command.add_option_function<std::string>(name, keep, about)->type_name("");
    };
    add("A", "A record or a trace, - for standard input")->required();
    add("B", "What it is held against");
    AddChoice(command, "--format", "FORMAT", kAnswerFormats, options.format, "text, for people (default), or json");
    AddSideOptions(command, options.names, options.isProgressHidden);
}

/// Why a replay cannot be done as asked; nothing if it can.
std::optional<CommandLineError> WhyNot(const ReplayOptions& options) {
    if (options.hasReasons && options.format != Format::JSONL) {
        return CommandLineError{"--reasons goes with --format jsonl"};
    }
    const bool isForFile = !options.report.empty() || !options.traceEvents.empty();
    if (options.report.empty() && (options.names.configs.size() > 1 || options.names.plugins.size() > 1)) {
        return CommandLineError{"--config and --plugin are named once here; twice with --report"};
    }
    if (isForFile && (options.format == Format::JSONL || options.report.empty() == options.traceEvents.empty())) {
        return CommandLineError{"--report, --trace-events and --format jsonl each need a run of their own"};
    }
    if (!options.traceEvents.empty() && options.names.traces.size() > 1) {
        return CommandLineError{"--trace-events takes one trace"};
    }
    return std::nullopt;
}

/// One trace is held against itself: what is named once for it goes to the second side.
DiffOptions WithBothSides(DiffOptions options) {
    auto& [traces, configs, plugins] = options.names;
    if (traces.size() == 1 && configs.size() == 1) {
        configs.insert(configs.begin(), "");
    }
    if (plugins.empty() || (traces.size() == 1 && plugins.size() == 1)) {
        plugins.insert(plugins.begin(), DefaultPlugin());
    }
    return options;
}

void AddWhy(CLI::App& app, WhyOptions& options) {
    CLI::App& command = *app.add_subcommand("why", "Play a trace; tell why it is as it is at one moment");
    command.footer(kWhyFooter);
    command.add_option("TRACE", options.trace, "The trace to play, - for standard input")->required()->type_name("");
    command.add_option("--at", options.at, kAtAbout)->required()->type_name("TIME");
    std::string words;
    for (size_t i = 0; i < Story::kAbouts; ++i) {
        words.append(i == 0 ? "" : ", ").append(Story::WordOf(static_cast<Story::About>(i)));
    }
    CLI::Option* about = command
                             .add_option_function<std::string>(
                                 "--about",
                                 [&options, words](const std::string& word) {
                                     options.question.about = Story::AboutOf(word);
                                     if (!options.question.about) {
                                         throw CLI::ValidationError("--about", word + "; expected one of " + words);
                                     }
                                 },
                                 "One subject and all that is known of it: " + words)
                             ->type_name("SUBJECT");
    command
        .add_option("--app", options.question.app,
                    "An application or native process, by name, bundle, uid or pid, in place of a subject")
        ->type_name("NAME")
        ->excludes(about);
    AddChoice(command, "--format", "FORMAT", kAnswerFormats, options.format,
              "text, sentences for people (default), or json, the answer for programs");
    AddPlayerOptions(command, options.player);
}

void AddShell(CLI::App& app, ShellOptions& options) {
    CLI::App& command = *app.add_subcommand("shell", "A prompt on the simulated phone, to move it by hand");
    command.footer(kShellFooter);
    command.add_option("TRACE", options.trace, "The trace to start from")->type_name("");
    AddChoice(command, "--color", "WHEN", kColors, options.color, "auto (default), always, never");
    AddPlayed(command, options.plugin, options.config);
}

}  // namespace

Request ParseCommandLine(int argc, const char* const* argv) {
    ReplayOptions replay;
    DumpOptions dump;
    DiffOptions diff;
    WhyOptions why;
    ShellOptions shell;
    dump.player.plugin = shell.plugin = why.player.plugin = DefaultPlugin();
    replay.names.plugins = {DefaultPlugin()};
    CLI::App app(kAbout, "standby");
    app.footer(std::string(kExamples) + kExitStatuses);
    app.set_version_flag("--version", "standby " STANDBY_VERSION, "Print the version and exit");
    app.require_subcommand(0, 1);
    AddReplay(app, replay);
    AddDump(app, dump);
    AddDiff(app, diff);
    AddWhy(app, why);
    AddShell(app, shell);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return TextRequest{app.help()};
    } catch (const CLI::CallForVersion& version) {
        return TextRequest{std::string(version.what()) + "\n"};
    } catch (const CLI::ParseError& error) {
        return CommandLineError{std::string(error.what()) + "; try standby --help"};
    }
    if (app.got_subcommand("dump")) {
        return dump;
    }
    if (app.got_subcommand("why")) {
        return why;
    }
    if (app.got_subcommand("replay")) {
        if (auto error = WhyNot(replay)) {
            return *std::move(error);
        }
        return replay;
    }
    if (app.got_subcommand("diff")) {
        return WithBothSides(std::move(diff));
    }
    if (app.got_subcommand("shell")) {
        return shell;
    }
    return CommandLineError{"no command; try standby --help"};
}

}  // namespace TARN::Cli
