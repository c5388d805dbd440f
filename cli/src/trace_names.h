#ifndef CLI_TRACE_NAMES_H
#define CLI_TRACE_NAMES_H

#include <deque>
#include <fstream>
#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace TARN::Cli {

/// The traces that a command line names, one after the other: files as they are, for a folder the traces in it and
/// below, in the order of their names, and then the lines of a list.
class TraceNames {
public:
    /// `list` is the file that holds further names, one a line; "-": standard input; empty: there is none. Throws
    /// InputError when it cannot be opened, or when standard input is to be more than one thing.
    TraceNames(const std::vector<std::string>& names, const std::string& list);
    TraceNames(const TraceNames&) = delete;
    TraceNames& operator=(const TraceNames&) = delete;

    /// The next trace's name; nothing when there are no more. Throws InputError for a folder that cannot be read or
    /// holds no trace, and goes on behind it.
    [[nodiscard]] std::optional<std::string> Next();

    /// How many names are known to be left; those of a list and of folders that were not reached are not counted.
    [[nodiscard]] size_t Waiting() const noexcept { return named_.size() + folder_.size(); }

    /// Whether more than one file is named, be it that only one is found.
    [[nodiscard]] bool AreMany() const noexcept { return areMany_; }

private:
    std::optional<std::string> NextNamed();
    void Open(const std::string& folder);

    std::deque<std::string> named_;   ///< files and folders
    std::deque<std::string> folder_;  ///< the traces of the folder that is being read
    std::string listName_;
    std::ifstream file_;
    std::istream* list_ = nullptr;
    bool areMany_;
};

}  // namespace TARN::Cli

#endif  // CLI_TRACE_NAMES_H
