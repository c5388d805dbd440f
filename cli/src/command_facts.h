#ifndef CLI_COMMAND_FACTS_H
#define CLI_COMMAND_FACTS_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace TARN::Cli {

/// What there is to put in the place of an option's value or of an argument.
enum class ValueKind : uint8_t { NONE, FILE, FOLDER, WORDS, OTHER };

/// One option or argument of a command, as its manual and its completion know it.
struct OptionFacts {
    std::vector<std::string> names;  ///< with their dashes; of an argument the one name in capitals
    std::string placeholder;         ///< of the value; empty where there is none
    std::string limits;              ///< what is checked of the value, in the library's words; or empty
    std::string about;               ///< one sentence
    ValueKind kind = ValueKind::NONE;
    std::vector<std::string> words;     ///< of WORDS
    std::vector<std::string> excluded;  ///< the names that do not go with it
    bool isRequired = false;
    bool isRepeated = false;
};

/// A command, or the program itself.
struct CommandFacts {
    std::string name;    ///< `replay`
    std::string about;   ///< a sentence without its full stop
    std::string footer;  ///< what the help tells behind the options
    std::vector<OptionFacts> options;
    std::vector<OptionFacts> arguments;
};

/// Gives an option the words that it takes, or some of them. The help shows what the option's sentence says of them.
void NameWords(CLI::Option& option, const std::vector<std::string>& words);

/// What the help of the command shows. An option's value is a file or a folder where its placeholder says so, an
/// argument is a file unless it has words.
[[nodiscard]] CommandFacts FactsOf(CLI::App& command);

/// The commands of a program, in the order of its help.
[[nodiscard]] std::vector<CommandFacts> CommandsOf(CLI::App& app);

}  // namespace TARN::Cli

#endif  // CLI_COMMAND_FACTS_H
