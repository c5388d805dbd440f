#include "command_line.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "check_command.h"
#include "compare_command.h"
#include "diff_command.h"
#include "dump_command.h"
#include "exit_status.h"
#include "generate_command.h"
#include "import_command.h"
#include "json_fields.h"
#include "manual.h"
#include "nearest_name.h"
#include "new_command.h"
#include "replay_command.h"
#include "shell_command.h"
#include "why_command.h"

namespace TARN::Cli {

namespace {

constexpr char kAbout[] =
    "Plays recorded nights of a phone through the standby service and its plugin, in virtual time,\n"
    "and tells what the plugin did and why.\n";

constexpr char kExitStatuses[] =
    "Exit status:\n"
    "  0  done\n"
    "  1  the run failed: the plugin does not load, the output cannot be written, the plugin crashed on one of "
    "several\n"
    "     traces. On a single one the crash is the command's own, for a debugger to look at\n"
    "  2  the input is wrong: a trace, the configuration, the command line\n"
    "diff answers as diff does: 0 the same, 1 different, 2 trouble\n";

constexpr char kExamples[] =
    "Examples:\n"
    "  standby replay night.jsonl                     the night at a glance\n"
    "  standby replay --log info night.jsonl          ... with the plugin's own log inside\n"
    "  standby replay --format jsonl night.jsonl      the full record, for programs\n"
    "  standby replay --config try.json nights/*      one change against many nights\n"
    "  standby replay --report page.html night.jsonl  a page that shows it, for a browser\n"
    "  standby check nights/*                         what they hardly mean, without playing them\n"
    "  standby why night.jsonl --at 02:13             why it is as it is at that time\n"
    "  standby dump night.jsonl --at 02:13            the strategies' own words\n"
    "  standby diff night.jsonl --config try.json     what a change of the configuration changes\n"
    "  standby compare --config try.json nights/      ... over many nights\n"
    "  standby new -o mine.jsonl                      a commented night to start from\n"
    "  standby import night.csv -o night.jsonl        a log of another program as a trace\n"
    "  standby generate --nights 100 --folder nights  made-up nights\n"
    "  standby shell                                  a prompt on a simulated phone\n\n";

/// An action that writes a text.
Action Print(std::string text) {
    return [text = std::move(text)](OutputFile& output) {
        output.Stream() << text;
        return output.Finish();
    };
}

struct Command {
    std::string_view name;
    void (*add)(CLI::App& app, Action& action);
};

constexpr std::array kCommands = {Command{"replay", AddReplay},   Command{"check", AddCheck},
                                  Command{"dump", AddDump},       Command{"diff", AddDiff},
                                  Command{"compare", AddCompare}, Command{"why", AddWhy},
                                  Command{"shell", AddShell},     Command{"new", AddNew},
                                  Command{"import", AddImport},   Command{"generate", AddGenerate}};

/// Adds the command that the first word names; all of them where it is an option, or missing. Throws when it is
/// neither.
void AddCommands(CLI::App& app, Action& action, const std::string& word) {
    const auto* const named = std::find_if(kCommands.begin(), kCommands.end(),
                                           [&word](const Command& command) { return command.name == word; });
    if (named != kCommands.end()) {
        named->add(app, action);
        return;
    }
    std::vector<std::string_view> names;
    for (const Command& command : kCommands) {
        command.add(app, action);
        names.push_back(command.name);
    }
    if (word.starts_with('-')) {
        return;
    }
    const std::string_view nearest = DevStandbyMgr::NearestName(names, word);
    constexpr size_t kLongest = 80;
    throw DevStandbyMgr::InputError("no command " + DevStandbyMgr::Quote(word.substr(0, kLongest)) +
                                    (nearest.empty() ? "" : "; perhaps " + std::string(nearest)) +
                                    "; try standby --help");
}

}  // namespace

Action ParseCommandLine(int argc, const char* const* argv) {
    Action action;
    CLI::App app(kAbout, "standby");
    app.footer(std::string(kExamples) + kExitStatuses);
    app.set_version_flag("--version", "standby " STANDBY_VERSION, "Print the version and exit");
    app.require_subcommand(0, 1);
    AddCommands(app, action, argc > 1 ? argv[1] : "-");
    // for whoever installs the program; not in the help
    app.add_option_function<std::string>("--write-manual",
                                         [&](const std::string& folder) {
                                             action = [files = MakeManual(app), folder](OutputFile&) {
                                                 WriteManual(files, folder);
                                                 return kDone;
                                             };
                                         })
        ->group("");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        return Print(app.help());
    } catch (const CLI::CallForVersion& version) {
        return Print(std::string(version.what()) + "\n");
    } catch (const CLI::ParseError& error) {
        throw DevStandbyMgr::InputError(std::string(error.what()) + "; try standby --help");
    }
    if (!action) {
        throw DevStandbyMgr::InputError("no command; try standby --help");
    }
    return action;
}

}  // namespace TARN::Cli
