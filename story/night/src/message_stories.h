#ifndef STORY_MESSAGE_STORIES_H
#define STORY_MESSAGE_STORIES_H

#include "call_stories.h"
#include "phone_picture.h"
#include "sleep/sleep_story.h"
#include "standby_message.h"
#include "state_story.h"

namespace TARN::Story {

/// Tells what the host reports to the strategies, and remembers it as the cause of what they do.
class MessageStories {
public:
    MessageStories(Scribe& scribe, const PhonePicture& phone, CallStories& calls, StateStory& states, SleepStory& sleep)
        : scribe_(scribe), phone_(phone), calls_(calls), states_(states), sleep_(sleep) {}

    /// What the host is configured with, and whether it decides by itself.
    void OnConfig(const DevStandbyMgr::StandbyConfig& config) { config_ = &config; }

    /// The phone broadcasts what no strategy hears of.
    void OnUnheard(std::string_view action);

    void OnDeliver(const DevStandbyMgr::StandbyMessage& message);

private:
    using Want = AAFwk::Want;
    struct Story;
    static const Story* Find(int32_t eventId);

    struct BroadcastWords;
    static const BroadcastWords* FindBroadcast(std::string_view action);

    void SetLane(const BroadcastWords& words, Scribe::Id id);
    void Broadcast(const DevStandbyMgr::StandbyMessage& message);
    void Condition(const Want& want);
    void Exemption(const Want& want);
    void HalfHour(const Want& want);
    void DeviceState(const Want& want);
    void UserSleep(const Want& want);
    void KeepAlive(const Want& want);
    void BackgroundTask(const Want& want);

    Scribe& scribe_;
    const PhonePicture& phone_;
    CallStories& calls_;
    StateStory& states_;
    SleepStory& sleep_;
    const DevStandbyMgr::StandbyConfig* config_ = nullptr;
};

}  // namespace TARN::Story

#endif  // STORY_MESSAGE_STORIES_H
