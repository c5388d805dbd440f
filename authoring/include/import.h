#ifndef AUTHORING_IMPORT_H
#define AUTHORING_IMPORT_H

#include <cstdint>
#include <istream>
#include <optional>
#include <ostream>
#include <string>

#include "losses.h"

namespace TARN::Authoring {

/// A log of somebody else's that is to become a trace.
struct Source {
    std::istream& input;
    std::string name;  ///< what it is called in messages
    std::string timezone;
    /// The trace says what the log says and nothing else. Otherwise the host's configuration and the applications are
    /// those of the ordinary phone.
    bool isBare = false;
};

/// How many lines or rows were read, how many steps they made, and what was lost.
struct Imported {
    uint64_t read = 0;
    uint64_t steps = 0;
    Losses losses;
};

// Each reads the log once, in its order, and writes the trace on the way. Throws InputError, behind name and line, for
// what cannot be read; by then a part may be written.

/// Rows of comma-separated values under a row of column names. The mapping, JSON, says what its columns and values
/// mean; `mappingName` is its name in messages. Without one the column "time" holds local times and the column "event"
/// the words that a mapping would use.
[[nodiscard]] Imported ImportCsv(const Source& source, const std::optional<std::string>& mapping,
                                 const std::string& mappingName, std::ostream& output);

/// The history of Android's battery statistics, as text. `start` is the wall clock at its beginning, a local time,
/// where it does not say so itself.
[[nodiscard]] Imported ImportBatteryHistory(const Source& source, const std::optional<std::string>& start,
                                            std::ostream& output);

}  // namespace TARN::Authoring

#endif  // AUTHORING_IMPORT_H
