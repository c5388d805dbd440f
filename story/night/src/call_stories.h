#ifndef STORY_CALL_STORIES_H
#define STORY_CALL_STORIES_H

#include <string_view>

#include "call_result.h"
#include "network_story.h"
#include "process_story.h"
#include "radio_story.h"
#include "sleep/sleep_story.h"

namespace TARN::Story {

/// Tells what the plugin does to the phone, operation by operation.
class CallStories {
public:
    CallStories(Scribe& scribe, PhonePicture& phone, SleepStory& sleep)
        : scribe_(scribe),
          phone_(phone),
          sleep_(sleep),
          radios_(scribe),
          processes_(scribe, phone),
          network_(scribe, phone) {}

    /// Whether there is anything to tell of calls of an operation.
    [[nodiscard]] static bool Knows(std::string_view operation) noexcept;

    void OnCall(std::string_view operation, const Json& arguments, const Json& result);

    [[nodiscard]] RadioStory& Radios() noexcept { return radios_; }
    [[nodiscard]] ProcessStory& Processes() noexcept { return processes_; }
    [[nodiscard]] NetworkStory& Network() noexcept { return network_; }

private:
    struct Story;
    static const Story* Find(std::string_view operation);

    void AdjustTimer(bool isStretched, int64_t seconds, const Json& result);
    void ExemptFromStretching(const Json& names, bool isExempt, const Json& result);
    void Publish(const Json& arguments, const Json& result);

    Scribe& scribe_;
    PhonePicture& phone_;
    SleepStory& sleep_;
    RadioStory radios_;
    ProcessStory processes_;
    NetworkStory network_;
    int64_t stretchedTo_ = 0;  ///< seconds, 0 for not
};

}  // namespace TARN::Story

#endif  // STORY_CALL_STORIES_H
