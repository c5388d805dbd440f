#ifndef CLI_COLOR_H
#define CLI_COLOR_H

#include "options.h"

namespace TARN::Cli {

/// Whether to colour what goes to the output: left to itself, on a terminal that can, unless NO_COLOR is set.
[[nodiscard]] bool IsColored(ColorChoice choice, const OutputFile& output);

}  // namespace TARN::Cli

#endif  // CLI_COLOR_H
