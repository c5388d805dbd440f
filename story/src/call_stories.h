#ifndef STORY_CALL_STORIES_H
#define STORY_CALL_STORIES_H

#include <string_view>

#include "call_result.h"
#include "network_story.h"
#include "process_story.h"
#include "radio_story.h"
#include "sleep_story.h"

namespace TARN::Story {

/// Tells what the plugin does to the phone, operation by operation.
class CallStories {
public:
    CallStories(Teller& teller, NightSummary& night, PhonePicture& phone, SleepStory& sleep)
        : teller_(teller),
          night_(night),
          phone_(phone),
          sleep_(sleep),
          radios_(teller, night),
          processes_(teller, night, phone),
          network_(teller, night, phone) {}

    void OnCall(std::string_view operation, const Json& arguments, const Json& result);

    [[nodiscard]] RadioStory& Radios() noexcept { return radios_; }
    [[nodiscard]] ProcessStory& Processes() noexcept { return processes_; }

private:
    struct Story;
    static const Story* Find(std::string_view operation);

    void AdjustTimer(bool isStretched, int64_t seconds, const Json& result);
    void ExemptFromStretching(const Json& names, bool isExempt, const Json& result);
    void Publish(const Json& arguments, const Json& result);

    Teller& teller_;
    NightSummary& night_;
    PhonePicture& phone_;
    SleepStory& sleep_;
    RadioStory radios_;
    ProcessStory processes_;
    NetworkStory network_;
    int64_t stretchedTo_ = 0;  ///< seconds, 0 for not
};

}  // namespace TARN::Story

#endif  // STORY_CALL_STORIES_H
