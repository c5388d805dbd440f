#ifndef STORY_MESSAGE_STORIES_H
#define STORY_MESSAGE_STORIES_H

#include "phone_picture.h"
#include "sleep_story.h"
#include "standby_message.h"
#include "teller.h"

namespace TARN::Story {

/// Tells what the host reports to the strategies, and remembers it as the cause of what they do.
class MessageStories {
public:
    MessageStories(Teller& teller, const PhonePicture& phone, SleepStory& sleep)
        : teller_(teller), phone_(phone), sleep_(sleep) {}

    void OnDeliver(const DevStandbyMgr::StandbyMessage& message);

private:
    using Want = AAFwk::Want;
    struct Story;
    static const Story* Find(int32_t eventId);

    void Broadcast(const DevStandbyMgr::StandbyMessage& message);
    void State(const Want& want);
    void Phase(const Want& want);
    void Condition(const Want& want);
    void Exemption(const Want& want);
    void HalfHour(const Want& want);
    void DeviceState(const Want& want);
    void UserSleep(const Want& want);
    void KeepAlive(const Want& want);
    void BackgroundTask(const Want& want);

    Teller& teller_;
    const PhonePicture& phone_;
    SleepStory& sleep_;
    Entry* stateEntry_ = nullptr;  ///< the latest change of state, which its first phase joins
    uint64_t stateInstant_ = 0;
};

}  // namespace TARN::Story

#endif  // STORY_MESSAGE_STORIES_H
