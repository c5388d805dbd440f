#ifndef STORY_SPANS_H
#define STORY_SPANS_H

#include <cstdint>
#include <vector>

namespace TARN::Story {

/// When something was so: stretches of time in order, milliseconds of the wall clock.
class Spans {
public:
    struct Span {
        int64_t from;
        int64_t to;
    };

    /// From `t` on it is so, or not.
    void Set(int64_t t, bool isSo) {
        if (isSo && !isSo_) {
            spans_.push_back({t, t});
        } else if (!isSo && isSo_) {
            spans_.back().to = t;
        }
        isSo_ = isSo;
    }

    /// Whether it is so now.
    [[nodiscard]] bool IsSo() const noexcept { return isSo_; }

    /// Whether it ceased to be so at `t`.
    [[nodiscard]] bool EndsAt(int64_t t) const noexcept { return !isSo_ && !spans_.empty() && spans_.back().to == t; }

    /// The stretches up to `end`.
    [[nodiscard]] std::vector<Span> Until(int64_t end) const {
        std::vector<Span> spans = spans_;
        if (isSo_) {
            spans.back().to = end;
        }
        return spans;
    }

private:
    std::vector<Span> spans_;
    bool isSo_ = false;
};

}  // namespace TARN::Story

#endif  // STORY_SPANS_H
