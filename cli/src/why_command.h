#ifndef CLI_WHY_COMMAND_H
#define CLI_WHY_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby why`: plays a trace and tells why the phone is as it is at one moment.
void AddWhy(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_WHY_COMMAND_H
