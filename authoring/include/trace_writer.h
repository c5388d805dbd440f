#ifndef AUTHORING_TRACE_WRITER_H
#define AUTHORING_TRACE_WRITER_H

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "local_clock.h"
#include "ordinary_phone.h"

namespace TARN::Authoring {

/// How a trace's times are written: as short as a person would, "22:30", or each for itself.
enum class TimeStyle : uint8_t { SHORT, FULL };

/// What an application does in the background, by the type of its continuous task.
enum class Background : uint8_t { AUDIO = 2, LOCATION = 4 };

/// Writes a trace line by line, in the order of time. Facts of one moment become one step.
class TraceWriter {
public:
    /// The output and the clock outlive the writer.
    TraceWriter(std::ostream& output, LocalClock& clock, TimeStyle style);

    /// Lines behind "# ".
    void Comment(std::string_view text);

    /// The first line that is none of these. Without an end the trace ends with its last step.
    void Header(int64_t start, std::optional<int64_t> end, const Json& host, const Json& device);

    void Screen(int64_t t, bool isOn) { Step(t, "screen", isOn ? R"("on")" : R"("off")"); }
    void Unlock(int64_t t) { Step(t, "unlock", "true"); }
    void Charger(int64_t t, bool isPlugged) { Step(t, "charger", isPlugged ? R"("plugged")" : R"("unplugged")"); }
    void Restart(int64_t t) { Step(t, "restart", R"("stop")"); }
    void Call(int64_t t, bool starts);
    void Task(int64_t t, Background what, bool runs);
    void Broadcast(int64_t t, std::string_view action, std::string_view want = {});
    void Movement(int64_t t, bool isMoving);
    void Alarm(int64_t t, std::optional<int64_t> rings);

    /// A time after `now` as the fact "alarm" has it, JSON.
    [[nodiscard]] std::string LaterTime(int64_t t, int64_t now);

    /// A fact and its value as JSON.
    void Fact(int64_t t, std::string_view name, std::string value);

    /// A step of any kind, its content as JSON.
    void Step(int64_t t, std::string_view kind, std::string_view content);

    /// Writes what is held back; the last call.
    void Finish();

private:
    [[nodiscard]] std::string Time(int64_t t);
    void WriteStep(int64_t t, std::string_view kind, std::string_view content);
    void WriteFacts();

    std::ostream& output_;
    LocalClock& clock_;
    TimeStyle style_;
    int64_t last_ = 0;  ///< when the last line takes place
    int64_t factsAt_ = 0;
    std::vector<std::pair<std::string, std::string>> facts_;  ///< of one moment, not written yet
    bool isCalling_ = false;
    bool plays_ = false;
    bool locates_ = false;
};

}  // namespace TARN::Authoring

#endif  // AUTHORING_TRACE_WRITER_H
