#ifndef TESTS_CAMPAIGN_H
#define TESTS_CAMPAIGN_H

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace TARN::Tests {

/// Where the cases of one worker tell what came of them; in memory that outlives the worker.
class Report {
public:
    static constexpr size_t kMostFigures = 8;

    /// Prints a line: what is wrong with a case.
    void Find(const std::string& name, const std::string& what);

    /// Adds to one of the campaign's figures.
    void Count(size_t figure, uint64_t number = 1) { figures_.at(figure) += number; }

private:
    friend class Workers;

    std::atomic<uint64_t> current_ = 0;
    std::atomic<uint64_t> findings_ = 0;
    std::array<std::atomic<uint64_t>, kMostFigures> figures_{};
};

/// Cases that follow from their numbers alone and are tried one after the other by several processes.
struct Campaign {
    std::string unit;                  ///< what a case is: "nights"
    std::vector<std::string> figures;  ///< the names of what is counted
    /// The case's name in a finding: what reproduces it.
    std::function<std::string(uint64_t number)> name;
    std::function<void(uint64_t number, Report& report)> play;
};

/// Which cases of a campaign are tried.
struct Range {
    uint64_t first = 0;
    uint64_t end = 0;    ///< the one behind the last
    uint64_t every = 1;  ///< one in so many
};

/// Tries the cases. One that its process does not survive, or that takes longer than a minute, is a finding. Prints the
/// findings and, last, the figures. Returns whether there was no finding.
[[nodiscard]] bool Run(const Campaign& campaign, const Range& cases, size_t jobs);

/// Where the plugin library lies.
[[nodiscard]] const char* CampaignPlugin();

}  // namespace TARN::Tests

#endif  // TESTS_CAMPAIGN_H
