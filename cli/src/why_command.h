#ifndef CLI_WHY_COMMAND_H
#define CLI_WHY_COMMAND_H

#include "command_line.h"
#include "output_file.h"

namespace TARN::Cli {

/// `standby why`: plays a trace and tells why the phone is as it is at one moment. Returns the exit status.
[[nodiscard]] int RunWhy(const WhyOptions& options, OutputFile& output);

}  // namespace TARN::Cli

#endif  // CLI_WHY_COMMAND_H
