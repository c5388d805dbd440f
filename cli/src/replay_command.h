#ifndef CLI_REPLAY_COMMAND_H
#define CLI_REPLAY_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby replay`: plays traces and tells of them.
void AddReplay(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_REPLAY_COMMAND_H
