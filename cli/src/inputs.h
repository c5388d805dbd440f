#ifndef CLI_INPUTS_H
#define CLI_INPUTS_H

#include <optional>
#include <string>
#include <vector>

#include "progress.h"
#include "trace.h"

namespace TARN::Cli {

/// Reads all traces, "-" being standard input, and lays the configuration file, if it has a name, over each.
/// Complains about everything that is wrong; then there is no result.
[[nodiscard]] std::optional<std::vector<Replay::Trace>> ReadInputs(const std::vector<std::string>& names,
                                                                   const std::string& config, Progress& progress);

}  // namespace TARN::Cli

#endif  // CLI_INPUTS_H
