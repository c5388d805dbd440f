#ifndef STORY_MOMENTS_H
#define STORY_MOMENTS_H

#include <cstdint>
#include <string>

#include "why.h"

namespace TARN::Story {

/// Names times as an answer to a question about one moment needs them: the day only where it is not plain, seconds only
/// within the minute that was asked for, the zone's letters only where the clock was changed in between.
class Moments {
public:
    explicit Moments(const WhyAnswer& answer) : t_(answer.t), areDatesSaid_(answer.areDatesSaid) {}

    /// "at 02:13", "on Sun 1 Mar at 02:13", "at 02:13:05", "at 02:13 CEST".
    [[nodiscard]] std::string At(int64_t t) const;

    /// "since 02:13", "since Sun 1 Mar, 02:13".
    [[nodiscard]] std::string Since(int64_t t) const;

    [[nodiscard]] int64_t Ago(int64_t t) const noexcept { return t_ - t; }

    /// The moment that was asked for, in full: "Mon 2 Mar 2026, 02:13"; with the zone's letters where
    /// the clock is changed within hours.
    [[nodiscard]] std::string Asked() const;

private:
    /// "Sun 1 Mar" if the day has to be said, else nothing.
    [[nodiscard]] std::string Day(int64_t t) const;
    [[nodiscard]] std::string Time(int64_t t) const;

    int64_t t_;
    bool areDatesSaid_;
};

}  // namespace TARN::Story

#endif  // STORY_MOMENTS_H
