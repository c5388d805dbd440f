#ifndef CLI_COMMAND_LINE_H
#define CLI_COMMAND_LINE_H

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "log_service.h"
#include "sides.h"
#include "why.h"

namespace TARN::Cli {

enum class Format : uint8_t { TEXT, JSONL };
enum class ColorChoice : uint8_t { AUTO, ALWAYS, NEVER };

/// What a command that plays one trace needs.
struct PlayerOptions {
    std::string plugin;  ///< the plugin's file
    std::string config;  ///< a file that overrides the traces' host; empty for none
    bool isProgressHidden = false;
};

struct ReplayOptions {
    SideNames names;  ///< without a report any number of traces, at most one configuration, one plugin
    Format format = Format::TEXT;
    ColorChoice color = ColorChoice::AUTO;
    std::optional<LogLevel> log;  ///< the least level of the plugin's log shown in the timeline
    bool isUnfolded = false;
    std::string report;       ///< the file for the page that shows the night, or two; empty: none is asked for
    std::string traceEvents;  ///< the file for the one trace's night as trace events; empty: none is asked for
    bool hasReasons = false;  ///< the full record has the host's own reasons too
    bool isProgressHidden = false;
};

struct DumpOptions {
    PlayerOptions player;
    std::string trace;
    std::string at;  ///< as ReadTimeArgument takes it; empty for the end
    std::vector<std::string> words;
};

/// Sentences for people, or the same for programs.
enum class AnswerFormat : uint8_t { TEXT, JSON };

struct DiffOptions {
    SideNames names;  ///< of traces or records: one or two; two of each where a run of one is held against another
    AnswerFormat format = AnswerFormat::TEXT;
    bool isProgressHidden = false;
};

struct WhyOptions {
    PlayerOptions player;
    std::string trace;
    std::string at;  ///< as ReadTimeArgument takes it
    Story::WhyQuestion question;
    AnswerFormat format = AnswerFormat::TEXT;
};

struct ShellOptions {
    std::string plugin;
    std::string config;  ///< a file that overrides the trace's host; empty for none
    std::string trace;   ///< empty for an ordinary phone
    ColorChoice color = ColorChoice::AUTO;
};

/// Help or version, for standard output.
struct TextRequest {
    std::string text;
};

/// A command line that cannot be followed, and why.
struct CommandLineError {
    std::string text;
};

/// What a command line asks for.
using Request =
    std::variant<ReplayOptions, DumpOptions, DiffOptions, WhyOptions, ShellOptions, TextRequest, CommandLineError>;

[[nodiscard]] Request ParseCommandLine(int argc, const char* const* argv);

}  // namespace TARN::Cli

#endif  // CLI_COMMAND_LINE_H
