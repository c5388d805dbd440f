#ifndef CLI_PROGRESS_H
#define CLI_PROGRESS_H

#include <chrono>
#include <string>

namespace TARN::Cli {

/// One line on standard error that says how far long work is; erased when it is done. It shows only on a
/// terminal, and only when the work takes long enough to wonder.
class Progress {
public:
    explicit Progress(bool isWanted);
    ~Progress() { Erase(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// `fraction` of the work, 0 to 1, is done. `work` says what the work is: "reading", "playing".
    void Show(const char* work, double fraction);
    void Erase();

private:
    using Clock = std::chrono::steady_clock;

    bool isWanted_;
    bool isShown_ = false;
    Clock::time_point next_;
};

}  // namespace TARN::Cli

#endif  // CLI_PROGRESS_H
