#ifndef CLI_DIFF_COMMAND_H
#define CLI_DIFF_COMMAND_H

#include "command_line.h"
#include "output_file.h"

namespace TARN::Cli {

/// `standby diff`: holds two runs, recorded or played, against each other. Returns the exit status, which is that of
/// diff: 0 the same, 1 different, 2 trouble of any kind.
[[nodiscard]] int RunDiff(const DiffOptions& options, OutputFile& output);

}  // namespace TARN::Cli

#endif  // CLI_DIFF_COMMAND_H
