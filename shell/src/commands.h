#ifndef SHELL_COMMANDS_H
#define SHELL_COMMANDS_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "arguments.h"
#include "bench.h"

namespace TARN::Shell {

/// One word that a person can begin a line with.
struct Command {
    std::string_view name;
    /// What follows it: words as they are typed, a|b for a choice, CAPITALS for what they stand for, [ ] around what
    /// may be left out.
    std::string_view usage;
    std::string_view about;  ///< one line
    std::string_view more;   ///< further lines, or nothing
    void (*run)(Bench& bench, Arguments& words);
};

/// Commands that belong together.
struct CommandGroup {
    std::string_view title;
    std::span<const Command> commands;
};

[[nodiscard]] std::span<const CommandGroup> CommandGroups();

/// Null for an unknown name.
[[nodiscard]] const Command* FindCommand(std::string_view name);

/// "screen on|off".
[[nodiscard]] std::string UsageOf(const Command& command);

/// The words that `get` knows.
[[nodiscard]] std::vector<std::string> ValueNames();

// The groups, one in a source each.
[[nodiscard]] std::span<const Command> PhoneCommands();
[[nodiscard]] std::span<const Command> StateCommands();
[[nodiscard]] std::span<const Command> TimeCommands();
[[nodiscard]] std::span<const Command> AskingCommands();

}  // namespace TARN::Shell

#endif  // SHELL_COMMANDS_H
