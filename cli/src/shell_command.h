#ifndef CLI_SHELL_COMMAND_H
#define CLI_SHELL_COMMAND_H

#include "command_line.h"
#include "output_file.h"

namespace TARN::Cli {

/// `standby shell`: a prompt on the simulated phone, or commands from standard input. Returns the exit status.
[[nodiscard]] int RunShell(const ShellOptions& options, OutputFile& output);

}  // namespace TARN::Cli

#endif  // CLI_SHELL_COMMAND_H
