#include "command_line.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <map>
#include <system_error>

#include "log_names.h"

namespace TARN::Cli {

namespace {

constexpr char kAbout[] =
    "Plays recorded nights of a phone through the standby service and its plugin, in virtual time,\n"
    "and tells what the plugin did and why.\n";

constexpr char kExitStatuses[] =
    "Exit status:\n"
    "  0  done\n"
    "  1  the run failed: the plugin does not load, the output cannot be written\n"
    "  2  the input is wrong: a trace, the configuration, the command line\n";

constexpr char kExamples[] =
    "Examples:\n"
    "  standby replay night.jsonl                     the night at a glance\n"
    "  standby replay --log info night.jsonl          ... with the plugin's own log inside\n"
    "  standby replay --format jsonl night.jsonl      the full record, for programs\n"
    "  standby replay --config try.json nights/*      one change against many nights\n"
    "  standby dump night.jsonl --at 2026-03-02T02:13:00\n\n";

constexpr char kReplayFooter[] =
    "The file given with --config is a JSON object with the keys of a trace's \"host\", and \"policy\";\n"
    "what it names replaces what the traces say.\n";

constexpr char kDumpFooter[] =
    "A word that begins with a dash goes behind two dashes:\n"
    "  standby dump night.jsonl -- DUMP_SIMULATE_SENSOR DUMP_STRATGY_DETAIL -ST --SetMode 1\n";

/// The plugin as it is built and installed: in lib beside the bin that holds this program.
std::string DefaultPlugin() {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    return (self.parent_path().parent_path() / "lib" / "libphone_standby.so").string();
}

void AddPlayerOptions(CLI::App& command, PlayerOptions& options) {
    command.add_option("--plugin", options.plugin, "The plugin to load; else the one built with this program")
        ->type_name("FILE");
    command.add_option("--config", options.config, "Host configuration that overrides the traces' own")
        ->type_name("FILE");
    command.add_flag("!--no-progress", options.hasProgress, "Show no progress on the terminal");
}

void AddReplay(CLI::App& app, ReplayOptions& options, std::string& log) {
    static const std::map<std::string, Format> kFormats = {{"text", Format::TEXT}, {"jsonl", Format::JSONL}};
    static const std::map<std::string, ColorChoice> kColors = {
        {"auto", ColorChoice::AUTO}, {"always", ColorChoice::ALWAYS}, {"never", ColorChoice::NEVER}};
    CLI::App& command = *app.add_subcommand("replay", "Play traces; tell what happened and why");
    command.footer(kReplayFooter);
    command.add_option("traces", options.traces, "Traces to play, - for standard input")
        ->required()
        ->type_name("TRACE");
    command.add_option("--format", options.format, "text, a timeline for people (default), or jsonl, the full record")
        ->type_name("FORMAT")
        ->transform(CLI::Transformer(kFormats).description(""))
        ->check(CLI::IsMember({"text", "jsonl"}).description(""));
    command.add_option("--log", log, "Show the plugin's log from this level on: debug, info, warn, error")
        ->type_name("LEVEL")
        ->check(CLI::IsMember({"debug", "info", "warn", "error"}).description(""));
    command.add_option("--color", options.color, "auto (default), always, never")
        ->type_name("WHEN")
        ->transform(CLI::Transformer(kColors).description(""))
        ->check(CLI::IsMember({"auto", "always", "never"}).description(""));
    command.add_flag("--unfold", options.isUnfolded, "Show every screen-on, too, where the phone is in plain use");
    AddPlayerOptions(command, options.player);
}

void AddDump(CLI::App& app, DumpOptions& options) {
    CLI::App& command = *app.add_subcommand("dump", "Play a trace up to a time; print the strategies' dump");
    command.footer(kDumpFooter);
    command.add_option("trace", options.trace, "The trace to play, - for standard input")
        ->required()
        ->type_name("TRACE");
    command
        .add_option("words", options.words, "The dump command's words (default DUMP_DETAIL_INFO DUMP_STRATGY_DETAIL)")
        ->type_name("WORD");
    command.add_option("--at", options.at, "Milliseconds or local time, as in a trace (default its end)")
        ->type_name("TIME");
    AddPlayerOptions(command, options.player);
}

}  // namespace

std::variant<ReplayOptions, DumpOptions, TextRequest, CommandLineError> ParseCommandLine(int argc,
                                                                                         const char* const* argv) {
    ReplayOptions replay;
    DumpOptions dump;
    std::string log;
    replay.player.plugin = dump.player.plugin = DefaultPlugin();
    CLI::App app(kAbout, "standby");
    app.footer(std::string(kExamples) + kExitStatuses);
    app.set_version_flag("--version", "standby " STANDBY_VERSION, "Print the version and exit");
    app.require_subcommand(1);
    AddReplay(app, replay, log);
    AddDump(app, dump);
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
    if (!log.empty()) {
        replay.log = Replay::LevelNamed(log);
    }
    return replay;
}

}  // namespace TARN::Cli
