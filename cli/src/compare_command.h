#ifndef CLI_COMPARE_COMMAND_H
#define CLI_COMPARE_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby compare`: plays many traces under two configurations or plugins and tells what the difference amounts to.
void AddCompare(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_COMPARE_COMMAND_H
