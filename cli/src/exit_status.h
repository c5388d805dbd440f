#ifndef CLI_EXIT_STATUS_H
#define CLI_EXIT_STATUS_H

#include <exception>
#include <string>

namespace TARN::Cli {

inline constexpr int kDone = 0;
inline constexpr int kRunFailed = 1;   ///< the plugin does not load, the output cannot be written
inline constexpr int kInputWrong = 2;  ///< a trace, the configuration or the command line

/// What ended a run: its exit status, and the words for it.
struct Failure {
    int status;
    std::string text;
};

[[nodiscard]] Failure FailureOf(const std::exception& error);

/// Tells the person at the terminal what went wrong, as one line on standard error.
void Complain(const std::string& text);

}  // namespace TARN::Cli

#endif  // CLI_EXIT_STATUS_H
