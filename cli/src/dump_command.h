#ifndef CLI_DUMP_COMMAND_H
#define CLI_DUMP_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby dump`: plays a trace up to a time and prints the strategies' dump.
void AddDump(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_DUMP_COMMAND_H
