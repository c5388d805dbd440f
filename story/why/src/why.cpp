#include "why.h"

#include <algorithm>

#include "app_answers.h"
#include "causes.h"
#include "topics.h"

namespace TARN::Story {

namespace {

constexpr int64_t kDayMs = 24L * 3600 * 1000;

bool IsRefusal(const Event& event) {
    return event.outcome == Outcome::KEPT || event.outcome == Outcome::FAILED;
}

/// What happened of one subject up to a moment, after it came to be as it is.
class Since {
public:
    Since(const Night& night, int64_t t, Subject subject, uint32_t change)
        : night_(night), t_(t), subject_(subject), first_(change == kNoEvent ? 0 : change + 1) {}

    /// The latest event for which `fits` holds; kNoEvent for none.
    template <class Fits>
    [[nodiscard]] uint32_t Latest(Fits fits) const {
        const auto end = std::upper_bound(night_.events.begin(), night_.events.end(), t_,
                                          [](int64_t t, const Event& event) { return t < event.t; });
        for (auto i = static_cast<size_t>(end - night_.events.begin()); i > first_; --i) {
            const Event& event = night_.events[i - 1];
            if (event.subject == subject_ && fits(event)) {
                return static_cast<uint32_t>(i - 1);
            }
        }
        return kNoEvent;
    }

private:
    const Night& night_;
    int64_t t_;
    Subject subject_;
    size_t first_;
};

SubjectAnswer AnswerOf(const Night& night, int64_t t, const Topic& topic) {
    SubjectAnswer answer;
    answer.about = topic.about;
    uint32_t change = kNoEvent;
    if (topic.lane) {
        const Interval* interval = night.At(*topic.lane).At(t);
        answer.state = interval == nullptr ? kNotKnown : interval->value;
        if (interval != nullptr) {
            answer.number = interval->number;
            change = interval->event;
            if (interval->from > night.start || change != kNoEvent) {
                answer.since = interval->from;
            }
        }
    } else {
        change = Since(night, t, topic.subject, kNoEvent).Latest([](const Event& event) {
            return event.outcome == Outcome::DONE;
        });
    }
    if (topic.about == About::STATE) {
        if (const Interval* phase = night.At(LaneId::PHASE).At(t); phase != nullptr && phase->number >= 0) {
            answer.phase = {phase->value, phase->number, phase->from};
        }
    }
    answer.change = WithCauses(night, change);
    const Since since(night, t, topic.subject, change);
    answer.refusal = WithCauses(night, since.Latest(IsRefusal));
    const uint32_t latest = since.Latest([](const Event& event) { return !event.next.empty(); });
    if (latest != kNoEvent) {
        answer.next = night.events[latest].next;
    } else if (answer.change) {
        answer.next = answer.change->event.next;
    }
    return answer;
}

}  // namespace

WhyAnswer Ask(const Night& night, int64_t t, const WhyQuestion& question) {
    WhyAnswer answer;
    answer.t = t;
    answer.areDatesSaid = night.end - night.start > kDayMs;
    if (!question.app.empty()) {
        answer.apps = AskForApps(night, t, question.app);
        return answer;
    }
    answer.isBrief = !question.about;
    for (size_t i = 0; i < kAbouts; ++i) {
        const auto about = static_cast<About>(i);
        if (!question.about || *question.about == about) {
            answer.subjects.push_back(AnswerOf(night, t, TopicOf(about)));
        }
    }
    return answer;
}

}  // namespace TARN::Story
