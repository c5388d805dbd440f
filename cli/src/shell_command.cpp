#include "shell_command.h"

#include <unistd.h>
#include <memory>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <utility>

#include "color.h"
#include "exit_status.h"
#include "inputs.h"
#include "json_fields.h"
#include "line_editor.h"
#include "options.h"
#include "ordinary_phone.h"
#include "plain_text.h"
#include "player.h"
#include "shell.h"
#include "standby_config.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;

struct ShellOptions {
    std::string plugin;
    std::string config;  ///< a file that overrides the trace's host; empty for none
    std::string trace;   ///< empty for an ordinary phone
    ColorChoice color = ColorChoice::AUTO;
};

constexpr char kShellFooter[] =
    "Without a trace it is an ordinary phone at 21:00 of today, in the zone of TZ, else in UTC.\n"
    "From a pipe each line is a command; one that is wrong is told on standard error with its line's\n"
    "number, and the exit status is 2 in the end. The word help tells the commands.\n";

/// A phone and the trace that it starts from.
struct Start {
    Replay::Trace trace;
    Replay::TraceLines lines;
};

std::string OrdinaryPhone() {
    const Replay::TimeZone zone(OwnZone());
    zone.Use();
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return Authoring::OrdinaryPhone(zone, std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

/// Throws InputError.
Start ReadStart(const ShellOptions& options) {
    Start start;
    if (options.trace.empty()) {
        std::istringstream text(OrdinaryPhone());
        start.trace = Replay::ReadTrace(text, "an ordinary phone", &start.lines);
    } else if (options.trace == "-") {
        DevStandbyMgr::Refuse("-", "standard input is where the commands come from", "a trace in a file");
    } else {
        Input input(options.trace, "a trace");
        start.trace = ReadInput(input, &start.lines);
    }
    if (!options.config.empty()) {
        DevStandbyMgr::StandbyConfigFile(options.config).LayOver(start.trace.host);
    }
    return start;
}

volatile std::sig_atomic_t isInterrupted = 0;

/// At a prompt Ctrl-C stops what takes long, and not the program.
void HearInterrupts() {
    struct sigaction action {};
    action.sa_handler = [](int /*signal*/) { isInterrupted = 1; };
    sigaction(SIGINT, &action, nullptr);
}

std::string HistoryFile() {
    const auto folder = [](const char* variable) {
        const char* value = std::getenv(variable);
        return std::string(value != nullptr && *value == '/' ? value : "");
    };
    std::string state = folder("XDG_STATE_HOME");
    if (state.empty() && !folder("HOME").empty()) {
        state = folder("HOME") + "/.local/state";
    }
    return state.empty() ? "" : state + "/standby/history";
}

/// Somebody types.
int Converse(Shell::Shell& shell, OutputFile& output) {
    HearInterrupts();
    output.Stream() << shell.Greeting();
    output.Stream().flush();
    LineEditor editor(HistoryFile(), [&shell](const std::string& text) { return shell.Complete(text); });
    bool goesOn = true;
    while (goesOn && !output.IsBroken()) {
        const auto line = editor.Read(shell.Prompt());
        if (!line) {
            output.Stream() << '\n';
            break;
        }
        isInterrupted = 0;
        try {
            goesOn = shell.Do(*line);
        } catch (const InputError& error) {
            output.Stream().flush();
            Complain(error.what());
        }
        output.Stream().flush();
    }
    shell.Finish();
    return output.Finish();
}

/// A file or another program speaks.
int Obey(Shell::Shell& shell, OutputFile& output) {
    int status = kDone;
    std::string line;
    bool goesOn = true;
    for (size_t number = 1; goesOn && !output.IsBroken() && DevStandbyMgr::ReadLine(std::cin, line, "a command");
         ++number) {
        try {
            goesOn = shell.Do(line);
        } catch (const InputError& error) {
            output.Stream().flush();
            Complain("standard input:" + std::to_string(number) + ": " + error.what());
            status = kInputWrong;
        }
        output.Stream().flush();
    }
    shell.Finish();
    const int written = output.Finish();
    return written == kDone ? status : written;
}

int RunShell(const ShellOptions& options, OutputFile& output) {
    const bool isConversation = ::isatty(STDIN_FILENO) == 1 && output.IsTerminal();
    try {
        if (!isConversation) {
            RequireStandardInput();
        }
        const Start start = ReadStart(options);
        Shell::Shell shell(start.trace, start.lines,
                           {.pluginPath = options.plugin,
                            .isColored = IsColored(options.color, output),
                            .isInterrupted = [] { return isInterrupted != 0; },
                            .witness = nullptr},
                           output.Stream());
        return isConversation ? Converse(shell, output) : Obey(shell, output);
    } catch (const std::exception&) {
        output.Stream().flush();  // what was said before stands before the complaint
        throw;
    }
}

}  // namespace

void AddShell(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<ShellOptions>();
    ShellOptions& options = *shared;
    CLI::App& command = *app.add_subcommand("shell", "A prompt on the simulated phone, to move it by hand");
    command.footer(kShellFooter);
    AddTrace(command, options.trace, "The trace to start from");
    AddColor(command, options.color);
    AddPlayed(command, options.plugin, options.config);
    command.callback(
        [shared, &action] { action = [shared](OutputFile& output) { return RunShell(*shared, output); }; });
}

}  // namespace TARN::Cli
