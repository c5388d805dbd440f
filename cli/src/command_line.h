#ifndef CLI_COMMAND_LINE_H
#define CLI_COMMAND_LINE_H

#include "options.h"

namespace TARN::Cli {

/// What a command line asks for. Throws InputError when it cannot be followed.
[[nodiscard]] Action ParseCommandLine(int argc, const char* const* argv);

}  // namespace TARN::Cli

#endif  // CLI_COMMAND_LINE_H
