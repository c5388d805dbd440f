#ifndef CLI_SIDES_H
#define CLI_SIDES_H

#include <string>
#include <vector>

#include "slip_watch.h"
#include "trace.h"

namespace TARN::Cli {

/// What a command line names once for all runs, or once for each of the two that are held against each other.
struct SideNames {
    std::vector<std::string> traces;
    std::vector<std::string> configs;  ///< files that override the traces' host; "": the trace's own
    std::vector<std::string> plugins;  ///< at least one
};

/// One of the runs that are held against each other, ready to be played.
struct Side {
    std::string label;  ///< tells it from the other: what was named twice. Of a single side: the trace
    Replay::Trace trace;
    std::string plugin;
};

/// What tells one of two sides from the other: what is named twice.
[[nodiscard]] std::string LabelOf(const SideNames& names, size_t side);

/// One side, or two if anything is named twice. Throws InputError for what is wrong, also for what is named more than
/// twice.
[[nodiscard]] std::vector<Side> ReadSides(const SideNames& names, SlipWatch& slips);

/// The same with traces that are read already, as many as their names.
[[nodiscard]] std::vector<Side> MakeSides(const SideNames& names, const std::vector<Replay::Trace>& traces,
                                          SlipWatch& slips);

}  // namespace TARN::Cli

#endif  // CLI_SIDES_H
