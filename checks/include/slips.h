#ifndef CHECKS_SLIPS_H
#define CHECKS_SLIPS_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "standby_config.h"
#include "trace.h"

namespace TARN::Checks {

/// Something that a trace may say and that its writer hardly means, such as a broadcast that nobody matches.
struct Slip {
    size_t line = 0;   ///< of the trace, where it is found first; 0 in a configuration
    std::string text;  ///< one line
    size_t times = 1;  ///< how often it is found
};

/// Looks for the slips of a trace while it is read.
class SlipFinder {
public:
    /// Looks at the header; the steps of `head` are not looked at. The time zone must be in use.
    explicit SlipFinder(const Replay::Trace& head);
    ~SlipFinder();
    SlipFinder(const SlipFinder&) = delete;
    SlipFinder& operator=(const SlipFinder&) = delete;

    /// Looks at the next step.
    void Look(const Replay::Step& step);

    /// The slips, each kind once, in the order of the lines. After the first twenty kinds one more tells how many there
    /// are besides. The last call.
    [[nodiscard]] std::vector<Slip> Take();

private:
    struct Parts;
    std::unique_ptr<Parts> my_;
};

/// The slips of a whole trace.
[[nodiscard]] std::vector<Slip> FindSlips(const Replay::Trace& trace);

/// The slips of a configuration by itself.
[[nodiscard]] std::vector<Slip> FindSlips(const DevStandbyMgr::StandbyConfig& config);

}  // namespace TARN::Checks

#endif  // CHECKS_SLIPS_H
