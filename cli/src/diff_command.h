#ifndef CLI_DIFF_COMMAND_H
#define CLI_DIFF_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby diff`: holds two runs, recorded or played, against each other. Its exit status is that of
/// diff: 0 the same, 1 different, 2 trouble of any kind.
void AddDiff(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_DIFF_COMMAND_H
