#ifndef PLATFORM_COMMON_EVENT_SUBSCRIBE_INFO_H
#define PLATFORM_COMMON_EVENT_SUBSCRIBE_INFO_H

#include <utility>

#include "matching_skills.h"

namespace TARN::EventFwk {

/// The terms of a subscription.
class CommonEventSubscribeInfo {
public:
    explicit CommonEventSubscribeInfo(MatchingSkills skills) : skills_(std::move(skills)) {}

    [[nodiscard]] const MatchingSkills& GetMatchingSkills() const noexcept { return skills_; }

private:
    MatchingSkills skills_;
};

}  // namespace TARN::EventFwk

#endif  // PLATFORM_COMMON_EVENT_SUBSCRIBE_INFO_H
