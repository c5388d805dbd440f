#ifndef CLI_LINE_EDITOR_H
#define CLI_LINE_EDITOR_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace TARN::Cli {

/// Reads lines that a person types at the terminal: editing, a history that is kept in a file, completion.
class LineEditor {
public:
    /// Answers with the words that can stand where the last one of a text begins.
    using Completer = std::function<std::vector<std::string>(const std::string& text)>;

    /// `historyFile` is made with its folder when there is something to keep; empty for none. Throws
    /// std::runtime_error when the terminal cannot be had.
    LineEditor(std::string historyFile, Completer completer);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    /// One line without its end; an empty one for a line that was given up with Ctrl-C. Nothing at the end of the
    /// input.
    [[nodiscard]] std::optional<std::string> Read(const std::string& prompt);

private:
    struct Parts;
    std::unique_ptr<Parts> my_;
};

}  // namespace TARN::Cli

#endif  // CLI_LINE_EDITOR_H
