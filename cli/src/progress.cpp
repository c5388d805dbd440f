#include "progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace TARN::Cli {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPatience{300};
constexpr milliseconds kEvery{100};
constexpr char kEraseLine[] = "\r\033[K";
constexpr double kPercent = 100.0;

/// A terminal that prints what would steer another.
bool IsDumb() {
    const char* terminal = std::getenv("TERM");
    return terminal == nullptr || std::strcmp(terminal, "dumb") == 0;
}

}  // namespace

Progress::Progress(bool isWanted) : isWanted_(isWanted && ::isatty(STDERR_FILENO) == 1 && !IsDumb()) {
    if (isWanted_) {
        next_ = Clock::now() + kPatience;
    }
}

void Progress::Show(const char* work, double fraction) {
    if (!isWanted_) {
        return;
    }
    const Clock::time_point now = Clock::now();
    if (now < next_) {
        return;
    }
    next_ = now + kEvery;
    isShown_ = true;
    std::fprintf(stderr, "%s%s: %.0f %%", kEraseLine, work, std::clamp(fraction, 0.0, 1.0) * kPercent);
    std::fflush(stderr);
}

void Progress::Erase() {
    if (isShown_) {
        isShown_ = false;
        std::fputs(kEraseLine, stderr);
        std::fflush(stderr);
    }
}

}  // namespace TARN::Cli
