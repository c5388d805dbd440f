#ifndef CLI_CHECK_COMMAND_H
#define CLI_CHECK_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby check`: reads traces and tells what they hardly mean, without playing them.
void AddCheck(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_CHECK_COMMAND_H
