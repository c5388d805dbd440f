#include "options.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "worker_pool.h"

namespace TARN::Cli {

namespace {

constexpr std::array kColors = {Word<ColorChoice>{"auto", ColorChoice::AUTO},
                                Word<ColorChoice>{"always", ColorChoice::ALWAYS},
                                Word<ColorChoice>{"never", ColorChoice::NEVER}};
constexpr std::array kAnswerFormats = {Word<AnswerFormat>{"text", AnswerFormat::TEXT},
                                       Word<AnswerFormat>{"json", AnswerFormat::JSON}};

}  // namespace

void AddStrict(CLI::App& command, bool& isStrict) {
    command.add_flag("--strict", isStrict, "A slip in a trace is an error, exit status 2");
}

std::string DefaultPlugin() {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    return (self.parent_path() / STANDBY_PLUGIN).lexically_normal().string();
}

std::string OwnZone() {
    const char* variable = std::getenv("TZ");
    const std::string name = variable == nullptr || *variable == '\0' ? "UTC" : variable;
    return name.front() == ':' ? name.substr(1) : name;
}

void AddColor(CLI::App& command, ColorChoice& choice) {
    AddChoice(command, "--color", "WHEN", kColors, choice, "auto (default), always, never");
}

void AddAnswerFormat(CLI::App& command, AnswerFormat& format) {
    AddChoice(command, "--format", "FORMAT", kAnswerFormats, format,
              "text, sentences for people (default), or json, the answer for programs");
}

CLI::Option& AddTrace(CLI::App& command, std::string& trace, const std::string& about) {
    return *command.add_option("TRACE", trace, about)->type_name("");
}

CLI::Option& AddAt(CLI::App& command, std::string& at, const std::string& otherwise) {
    return *command
                .add_option("--at", at, "A time of day, a local time, +2h10m after the start, milliseconds" + otherwise)
                ->type_name("TIME");
}

void AddTraceNames(CLI::App& command, ManyTraces& traces, const std::string& about) {
    command
        .add_option("TRACE", traces.names, about + ", packed by gzip or not, folders of traces, - for standard input")
        ->type_name("");
    command
        .add_option("--files-from", traces.list,
                    "A file with the names of further traces, one a line; - for standard input")
        ->type_name("FILE");
}

void AddManyTraces(CLI::App& command, ManyTraces& traces) {
    constexpr int kMostJobs = 1024;
    traces.jobs = Processors();
    AddTraceNames(command, traces, "Traces to play");
    command
        .add_option("--jobs", traces.jobs,
                    "How many traces to play at a time, up to 1024 (default: as many as there are processors)")
        ->type_name("N")
        ->check(CLI::Range(1, kMostJobs).description(""));
}

void CheckNamed(const ManyTraces& traces) {
    if (traces.names.empty() && traces.list.empty()) {
        throw CLI::ValidationError("a trace is needed, or --files-from");
    }
}

void AddPlayed(CLI::App& command, std::string& plugin, std::string& config) {
    plugin = DefaultPlugin();
    command.add_option("--plugin", plugin, "The plugin to load; else the one built with this program")
        ->type_name("FILE");
    command.add_option("--config", config, "Host configuration that overrides the traces' own")->type_name("FILE");
}

void AddPlayerOptions(CLI::App& command, PlayerOptions& options) {
    AddPlayed(command, options.plugin, options.config);
    command.add_flag("--no-progress", options.isProgressHidden, "Show no progress on the terminal");
}

void AddSideOptions(CLI::App& command, SideNames& names, bool& isProgressHidden) {
    const auto add = [&command](const char* name, std::vector<std::string>& target, const char* about) {
        command.add_option(name, target, about)->type_name("FILE")->type_size(1)->allow_extra_args(false);
    };
    add("--plugin", names.plugins,
        "The plugin to load, else the one built with this program; twice: one for each side");
    add("--config", names.configs, "Host configuration that overrides the traces' own; twice: one for each side");
    command.add_flag("--no-progress", isProgressHidden, "Show no progress on the terminal");
}

}  // namespace TARN::Cli
