#ifndef CLI_REPLAY_COMMAND_H
#define CLI_REPLAY_COMMAND_H

#include "command_line.h"
#include "output_file.h"

namespace TARN::Cli {

/// `standby replay`: plays traces and tells of them on the output. Returns the exit status.
[[nodiscard]] int RunReplay(const ReplayOptions& options, OutputFile& output);

}  // namespace TARN::Cli

#endif  // CLI_REPLAY_COMMAND_H
