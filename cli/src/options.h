#ifndef CLI_OPTIONS_H
#define CLI_OPTIONS_H

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "command_facts.h"
#include "output_file.h"
#include "sides.h"

namespace TARN::Cli {

/// What a command does once the whole command line is read. Returns the exit status. Throws InputError for what is
/// wrong with its input and RunError for what failed.
using Action = std::function<int(OutputFile& output)>;

enum class ColorChoice : uint8_t { AUTO, ALWAYS, NEVER };

/// Sentences for people, or the same for programs.
enum class AnswerFormat : uint8_t { TEXT, JSON };

/// What a command that plays one trace needs.
struct PlayerOptions {
    std::string plugin;  ///< the plugin's file
    std::string config;  ///< a file that overrides the traces' host; empty for none
    bool isProgressHidden = false;
};

/// A word that an option knows, with what it stands for.
template <class T>
struct Word {
    std::string_view word;
    T meaning;
};

/// An option that takes one of `words`, which last as long as the command.
template <class Words, class Target>
void AddChoice(CLI::App& command, const std::string& name, const std::string& placeholder, const Words& words,
               Target& target, const std::string& about) {
    std::vector<std::string> known;
    for (const auto& one : words) {
        known.emplace_back(one.word);
    }
    CLI::Option* option = command.add_option_function<std::string>(
        name,
        [name, known, &words, &target](const std::string& word) {
            for (const auto& one : words) {
                if (one.word == word) {
                    target = one.meaning;
                    return;
                }
            }
            throw CLI::ValidationError(name, word + "; expected one of " + CLI::detail::join(known, ", "));
        },
        about);
    NameWords(*option->type_name(placeholder), known);
}

void AddColor(CLI::App& command, ColorChoice& choice);

void AddAnswerFormat(CLI::App& command, AnswerFormat& format);

/// The one trace of a command.
CLI::Option& AddTrace(CLI::App& command, std::string& trace, const std::string& about);

/// A moment of a trace, as ReadTimeArgument takes it.
CLI::Option& AddAt(CLI::App& command, std::string& at, const std::string& otherwise = "");

/// --plugin and --config of a command that plays; the plugin is the one built with this program until another is named.
void AddPlayed(CLI::App& command, std::string& plugin, std::string& config);

/// The same and --no-progress.
void AddPlayerOptions(CLI::App& command, PlayerOptions& options);

/// Traces of any number, as TraceNames takes them, and how many are played at a time.
struct ManyTraces {
    std::vector<std::string> names;
    std::string list;  ///< a file with the names of further traces; empty for none
    size_t jobs = 1;
};

/// The traces and --files-from. `about` says what becomes of them.
void AddTraceNames(CLI::App& command, ManyTraces& traces, const std::string& about);

/// The same, and --jobs.
void AddManyTraces(CLI::App& command, ManyTraces& traces);

/// Throws CLI's error when no trace is named at all.
void CheckNamed(const ManyTraces& traces);

/// The player's options of a command that plays one run or holds two against each other.
void AddSideOptions(CLI::App& command, SideNames& names, bool& isProgressHidden);

/// --strict of a command that warns of slips.
void AddStrict(CLI::App& command, bool& isStrict);

/// The plugin as it is built and installed with this program, wherever that is now.
[[nodiscard]] std::string DefaultPlugin();

/// The person's time zone: that of the variable TZ, else UTC.
[[nodiscard]] std::string OwnZone();

}  // namespace TARN::Cli

#endif  // CLI_OPTIONS_H
