#ifndef STORY_LOG_STORIES_H
#define STORY_LOG_STORIES_H

#include <optional>
#include <set>
#include <string>

#include "call_stories.h"
#include "log_service.h"
#include "plugin_texts.h"
#include "scribe.h"

namespace TARN::Story {

/// Tells what only the log says: what the plugin refused to do, and what went wrong. A warning or an error that has no
/// words of its own is told as it stands.
class LogStories {
public:
    /// Lines from `leastLog` on become events as they stand and need not be told again.
    LogStories(Scribe& scribe, CallStories& calls, SleepStory& sleep, std::optional<LogLevel> leastLog)
        : scribe_(scribe), calls_(calls), sleep_(sleep), leastLog_(leastLog) {}

    void OnLog(const LogLine& line);

private:
    void Tell(const PluginText& text, const LogLine& line);
    void Show(const LogLine& line);
    void Complain(const LogLine& line);

    Scribe& scribe_;
    CallStories& calls_;
    SleepStory& sleep_;
    std::optional<LogLevel> leastLog_;
    std::set<std::string> complaints_;  ///< told, those with words once a day
};

}  // namespace TARN::Story

#endif  // STORY_LOG_STORIES_H
