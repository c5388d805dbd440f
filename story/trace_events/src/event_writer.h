#ifndef STORY_EVENT_WRITER_H
#define STORY_EVENT_WRITER_H

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace TARN::Story {

/// A row of the viewer: a thread of a process, as the format has it.
struct Track {
    int64_t process = 0;
    int64_t thread = 0;
};

/// Writes trace events one by one, each on a line of its own. Times are microseconds from the beginning. Text that is
/// not UTF-8 becomes so.
class EventWriter {
public:
    using Json = nlohmann::ordered_json;

    explicit EventWriter(std::ostream& output);

    void NameProcess(int64_t process, std::string_view name);
    void NameThread(Track track, std::string_view name);

    /// A stretch of time of which a track holds only one at a time.
    void Slice(Track track, int64_t us, int64_t lengthUs, std::string_view name, std::string_view category, Json args);
    void Instant(Track track, int64_t us, std::string_view name, std::string_view category, Json args);
    void Counter(int64_t process, int64_t us, std::string_view name, double value);

    /// A stretch of time that may overlap others; what begins and ends has the same id, name and category.
    void Begin(int64_t process, int64_t us, uint64_t id, std::string_view name, std::string_view category, Json args);
    void End(int64_t process, int64_t us, uint64_t id, std::string_view name, std::string_view category);

    /// An arrow between the slices that hold the two places. `toUs` is not before `fromUs`.
    void Flow(uint64_t id, Track from, int64_t fromUs, Track to, int64_t toUs);

    /// The last call. `facts` are what the viewer shows of the file as a whole.
    void Finish(const Json& facts);

private:
    void Write(const Json& event);
    [[nodiscard]] static Json Event(const char* phase, Track track, int64_t us, std::string_view name,
                                    std::string_view category);
    void Name(const char* what, Track track, std::string_view name, int64_t place);

    std::ostream& output_;
    bool isFirst_ = true;
};

}  // namespace TARN::Story

#endif  // STORY_EVENT_WRITER_H
