#ifndef AUTHORING_TRANSLATION_H
#define AUTHORING_TRANSLATION_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "import.h"
#include "trace_writer.h"

namespace TARN::Authoring {

/// Something that a log says, in the words of a mapping: "screen on", "light 40", "alarm 06:30".
struct Saying {
    std::string_view word;  ///< one of Translation's
    std::string value;      ///< what follows it
};

/// Writes what a log says as a trace. What is so already is not said twice, but for what people do: screen and unlock.
class Translation {
public:
    /// How the log writes a time, in a value. Nothing for what is none.
    using ReadTime = std::function<std::optional<int64_t>(const std::string& text)>;

    Translation(const Source& source, std::ostream& output, ReadTime readTime);

    [[nodiscard]] LocalClock& Clock() noexcept { return clock_; }

    /// Finds the word that a text begins with; nothing for a text that begins with none, or has a value too many.
    [[nodiscard]] static std::optional<Saying> Read(std::string_view text);

    /// Whether a value has to follow this one.
    [[nodiscard]] static bool NeedsValue(const Saying& saying);

    /// All words, for messages.
    [[nodiscard]] static std::string Words();

    /// The trace begins, unless it has begun.
    void Begin(int64_t t);

    /// What is said becomes steps; false when its value is none.
    [[nodiscard]] bool Say(int64_t t, const Saying& saying);

    /// A step of any kind, its content as JSON.
    void Step(int64_t t, std::string_view kind, std::string_view content);

    /// The log ends: the trace lasts until `t`, and its last comments tell what was lost.
    void End(int64_t t, Imported& imported);

private:
    [[nodiscard]] bool IsNews(std::string_view fact, std::string_view value);
    void Count(int64_t t);
    [[nodiscard]] bool SayNumber(int64_t t, const Saying& saying);
    [[nodiscard]] bool SayAlarm(int64_t t, const std::string& value);

    const Source& source_;
    LocalClock clock_;
    TraceWriter writer_;
    ReadTime readTime_;
    std::map<std::string, std::string, std::less<>> known_;  ///< at first what a header leaves unsaid
    bool hasBegun_ = false;
    int64_t last_ = 0;  ///< when the trace ends so far
    uint64_t steps_ = 0;
};

}  // namespace TARN::Authoring

#endif  // AUTHORING_TRANSLATION_H
