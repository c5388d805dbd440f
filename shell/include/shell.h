#ifndef SHELL_SHELL_H
#define SHELL_SHELL_H

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "record_sink.h"
#include "trace.h"

namespace TARN::Shell {

struct ShellOptions {
    std::string pluginPath;
    bool isColored = false;
    std::function<bool()> isInterrupted;    ///< asked now and then while time goes by; true stops it
    Replay::RecordSink* witness = nullptr;  ///< hears of all that happens, too
};

/// What is behind a prompt on the simulated phone: takes commands, one a line, and tells what happened meanwhile.
///
/// The phone starts as the trace's header says. The trace's steps are done as the phone's time passes them; a command's
/// own step takes place one millisecond after all that happened before, so that a trace can say the same. One at a time
/// in a process.
class Shell {
public:
    /// `lines` are those of the trace. The output outlives the shell. Throws RunError when the plugin does not load.
    Shell(const Replay::Trace& trace, const Replay::TraceLines& lines, ShellOptions options, std::ostream& output);
    ~Shell();
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;

    /// Does one command; a blank line and a comment are none. False when the person wants to leave. Throws InputError,
    /// one line of text, for a wrong one, which has then done nothing.
    bool Do(const std::string& line);

    /// Stops the service. The last call.
    void Finish();

    /// What to say to a person who comes.
    [[nodiscard]] std::string Greeting() const;

    /// The local time and the state.
    [[nodiscard]] std::string Prompt() const;

    /// The words that can stand where the last one of `text` begins, sorted.
    [[nodiscard]] std::vector<std::string> Complete(std::string_view text) const;

private:
    struct Parts;
    std::unique_ptr<Parts> my_;
};

}  // namespace TARN::Shell

#endif  // SHELL_SHELL_H
