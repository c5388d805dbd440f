// Time that goes by.
#include <array>

#include "commands.h"
#include "json_fields.h"
#include "moment.h"
#include "phrases.h"
#include "time_zone.h"

namespace TARN::Shell {

namespace {

using DevStandbyMgr::Quote;
using DevStandbyMgr::Refuse;

constexpr int64_t kMostMs = 366L * 24 * 3600 * 1000;
constexpr char kLocal[] = "%FT%T";

void GoTo(Bench& bench, int64_t t) {
    const bool isThere = bench.phone.WaitUntil(t, bench.options.isInterrupted);
    bench.TellNews();
    if (!isThere) {
        bench.output << "stopped at " << Replay::TimeZone::Format(bench.phone.NowMs(), kLocal) << '\n';
    }
}

void Wait(Bench& bench, Arguments& words) {
    const std::string word = words.Word();
    words.End();
    const auto stretch = Replay::ReadStretch(word);
    if (!stretch || *stretch > kMostMs) {
        Refuse("", Quote(word), "wait 30s, 5m, 2h or 1h30m, at most 366d at a time");
    }
    GoTo(bench, bench.phone.NowMs() + *stretch);
}

void Until(Bench& bench, Arguments& words) {
    const std::string word = words.Rest();
    const int64_t next = bench.phone.NextMs();
    const auto t = Replay::ReadMoment(word, next);
    if (!t) {
        Refuse("", Quote(word), "until 02:13, or until 2026-03-02T02:13:00");
    }
    if (*t < next || *t > next + kMostMs) {
        Refuse("", Quote(word) + (*t < next ? " is over" : " is too far away"),
               "a time within 366 days from " + Replay::TimeZone::Format(next, kLocal));
    }
    GoTo(bench, *t);
}

void PlayOn(Bench& bench, Arguments& words) {
    words.End();
    if (bench.phone.IsTraceOver()) {
        Refuse("", "nothing is left of a trace", "wait or until");
    }
    GoTo(bench, bench.phone.Trace().end);
}

void Time(Bench& bench, Arguments& words) {
    words.End();
    bench.output << Replay::TimeZone::Format(bench.phone.NowMs(), "%a %e %b %Y %T, ")
                 << bench.phone.Trace().timezone.Name() << '\n';
}

constexpr std::array kCommands = {
    Command{"wait", "2h", "Time goes by: 30s, 5m, 2h, 1h30m, 3d",
            "At most 366d at a time. The steps of the trace are done when their time comes; Ctrl-C stops it.", Wait},
    Command{"until", "02:13", "Time goes by until the clock shows that, or until a local time", "", Until},
    Command{"play", "", "Time goes by until the trace is over", "", PlayOn},
    Command{"time", "", "What the clock shows", "", Time},
};

}  // namespace

std::span<const Command> TimeCommands() {
    return kCommands;
}

}  // namespace TARN::Shell
