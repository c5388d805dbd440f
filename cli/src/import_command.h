#ifndef CLI_IMPORT_COMMAND_H
#define CLI_IMPORT_COMMAND_H

#include "options.h"

namespace TARN::Cli {

/// `standby import`: a log of somebody else's as a trace.
void AddImport(CLI::App& app, Action& action);

}  // namespace TARN::Cli

#endif  // CLI_IMPORT_COMMAND_H
