#ifndef TESTS_CAMPAIGNS_H
#define TESTS_CAMPAIGNS_H

#include <cstdint>
#include <string>

#include "campaign.h"

namespace TARN::Tests {

struct KillOptions {
    uint64_t seed = 1;
    bool withFaults = false;  ///< operations fail for a while, too
    bool everything = false;  ///< looks at more in the morning than at radios and firewall
    std::string config;       ///< laid over each night's host; empty: none
    std::string folder;       ///< the nights with findings go there as traces; empty: nowhere
};

/// Made-up nights in which the service is killed, again and again, right after something it did, and starts again.
/// With the screen on for a minute in the morning the phone has to be all there.
[[nodiscard]] Campaign KillAnywhere(const KillOptions& options);

/// A process that replaces files again and again is killed: each is what it was before or after, whole, and what is
/// left beside them does not gather.
[[nodiscard]] Campaign KillWriters(uint64_t seed);

/// Nights in which every operation fails, alone and with every other one; then all is well again, and the night after
/// is as if nothing had been. `night` is the file that tells a day, `folder` as above.
[[nodiscard]] Campaign FailEverything(const std::string& night, const std::string& folder);

/// How many cases that one has: the first so many with one operation each, all with pairs.
struct FailCases {
    uint64_t alone;
    uint64_t all;
};
[[nodiscard]] FailCases CasesOfFailing();

}  // namespace TARN::Tests

#endif  // TESTS_CAMPAIGNS_H
