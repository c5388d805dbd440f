#ifndef CLI_COMPLETION_H
#define CLI_COMPLETION_H

#include <string>
#include <vector>

#include "command_facts.h"

namespace TARN::Cli {

/// A script for bash that completes commands, options, their words and files.
[[nodiscard]] std::string BashCompletion(const CommandFacts& program, const std::vector<CommandFacts>& commands);

/// The same as a function for zsh, with what each word means.
[[nodiscard]] std::string ZshCompletion(const CommandFacts& program, const std::vector<CommandFacts>& commands);

}  // namespace TARN::Cli

#endif  // CLI_COMPLETION_H
