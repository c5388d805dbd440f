#ifndef CLI_CRASH_LINE_H
#define CLI_CRASH_LINE_H

namespace TARN::Cli {

/// From here on a crash says on standard error which trace was being played and how far into it. Then what would have
/// happened anyway takes its course.
void TellOfCrashes();

}  // namespace TARN::Cli

#endif  // CLI_CRASH_LINE_H
