#ifndef CLI_GENERATE_COMMAND_H
#define CLI_GENERATE_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby generate`: made-up nights.
void AddGenerate(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_GENERATE_COMMAND_H
