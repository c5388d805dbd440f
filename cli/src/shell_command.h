#ifndef CLI_SHELL_COMMAND_H
#define CLI_SHELL_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby shell`: a prompt on the simulated phone, or commands from standard input.
void AddShell(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_SHELL_COMMAND_H
