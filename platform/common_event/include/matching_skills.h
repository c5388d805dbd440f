#ifndef PLATFORM_MATCHING_SKILLS_H
#define PLATFORM_MATCHING_SKILLS_H

#include <string>
#include <string_view>
#include <vector>

namespace TARN::EventFwk {

/// The broadcasts that a subscriber wants, by action, in the order in which they were added.
class MatchingSkills {
public:
    void AddEvent(std::string_view action) { events_.emplace_back(action); }

    [[nodiscard]] const std::vector<std::string>& GetEvents() const noexcept { return events_; }

private:
    std::vector<std::string> events_;
};

}  // namespace TARN::EventFwk

#endif  // PLATFORM_MATCHING_SKILLS_H
