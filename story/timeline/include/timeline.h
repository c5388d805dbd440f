#ifndef STORY_TIMELINE_H
#define STORY_TIMELINE_H

#include <memory>
#include <ostream>

#include "night.h"

namespace TARN::Story {

struct TimelineOptions {
    bool isColored = false;
    bool isUnfolded = false;  ///< tells every screen-on, also where the phone is merely used
    size_t columns = 0;       ///< the terminal's width, at which long lines go on below; 0: an event is always one line
};

/// Tells a night as a timeline for people: local time, what it is about, a sentence with its reason; and at the
/// end what the night amounted to. One timeline tells one night, while it is read.
class Timeline : public NightView {
public:
    Timeline(std::ostream& output, const TimelineOptions& options);
    ~Timeline() override;

    void OnHead(const Night& night) override;
    void OnEvent(const Night& night, const Event& event) override;
    void OnEnd(const Night& night) override;

    /// Writes what is still held back so that it may be told with what comes; for somebody who waits for it.
    void Flush();

private:
    struct Parts;
    std::unique_ptr<Parts> my_;
};

}  // namespace TARN::Story

#endif  // STORY_TIMELINE_H
