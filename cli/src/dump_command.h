#ifndef CLI_DUMP_COMMAND_H
#define CLI_DUMP_COMMAND_H

#include "command_line.h"
#include "output_file.h"

namespace TARN::Cli {

/// `standby dump`: plays a trace up to a time and prints the strategies' dump. Returns the exit status.
[[nodiscard]] int RunDump(const DumpOptions& options, OutputFile& output);

}  // namespace TARN::Cli

#endif  // CLI_DUMP_COMMAND_H
