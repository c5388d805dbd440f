#ifndef STORY_NIGHT_SUMMARY_H
#define STORY_NIGHT_SUMMARY_H

#include <map>
#include <set>
#include <string>
#include <vector>

#include "record_sink.h"
#include "spans.h"

namespace TARN::Story {

/// What a run amounted to, in a few lines. The stories fill it in while they tell.
class NightSummary {
public:
    Spans asleep;
    Spans bluetoothOff;
    Spans wifiOff;
    Spans modemOff;
    Spans firewall;
    Spans timers;
    Spans timersLong;  ///< ... stretched for the sleeping user
    std::vector<std::string> killed;

    /// A process is frozen, or thawed.
    void Freeze(int64_t t, int32_t pid, bool isFrozen);

    /// Something went wrong again that the timeline told the first time.
    void Repeat(const std::string& complaint) { ++repeats_[complaint]; }

    /// The summary's lines, left column and right column.
    struct Line {
        std::string name;
        std::string text;
    };
    [[nodiscard]] std::vector<Line> Lines(int64_t start, int64_t end, const Replay::Summary& summary) const;

private:
    [[nodiscard]] std::vector<Line> Asleep(int64_t start, int64_t end) const;
    [[nodiscard]] std::string Frozen(int64_t end) const;
    [[nodiscard]] std::string Timers(int64_t end) const;

    Spans frozen_;
    std::set<int32_t> frozenPids_;
    size_t mostFrozen_ = 0;
    std::map<std::string, uint64_t> repeats_;
};

}  // namespace TARN::Story

#endif  // STORY_NIGHT_SUMMARY_H
