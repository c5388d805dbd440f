#ifndef STORY_LOG_STORIES_H
#define STORY_LOG_STORIES_H

#include <optional>
#include <set>
#include <string>

#include "call_stories.h"
#include "log_service.h"
#include "night_summary.h"
#include "teller.h"

namespace TARN::Story {

/// Tells what only the plugin's log says: what it refused to do, and what went wrong. A warning or an error
/// that has no words of its own is told as it stands, once.
class LogStories {
public:
    /// Lines from `leastLog` on are shown as they stand and need not be told again.
    LogStories(Teller& teller, NightSummary& night, CallStories& calls, SleepStory& sleep,
               std::optional<LogLevel> leastLog)
        : teller_(teller), night_(night), calls_(calls), sleep_(sleep), leastLog_(leastLog) {}

    void OnLog(const LogLine& line);

private:
    void Show(const LogLine& line);
    void Complain(const LogLine& line);

    Teller& teller_;
    NightSummary& night_;
    CallStories& calls_;
    SleepStory& sleep_;
    std::optional<LogLevel> leastLog_;
    std::set<std::string> complaints_;
};

}  // namespace TARN::Story

#endif  // STORY_LOG_STORIES_H
