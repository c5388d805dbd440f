#ifndef CLI_NEW_COMMAND_H
#define CLI_NEW_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby new`: a night to start from.
void AddNew(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_NEW_COMMAND_H
