#ifndef CLI_INPUTS_H
#define CLI_INPUTS_H

#include <fstream>
#include <istream>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "progress.h"
#include "trace.h"

namespace TARN::Cli {

/// An opened file, "-" being standard input, whose beginning can be looked at before it is read.
class Input : private std::streambuf {
public:
    /// Throws InputError when it cannot be opened. `expected` says what should be there.
    Input(const std::string& name, const std::string& expected);
    ~Input() override;
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    /// What it is called in messages.
    [[nodiscard]] const std::string& Name() const noexcept { return name_; }
    [[nodiscard]] std::istream& Stream() noexcept { return stream_; }

    /// The first line that is neither blank nor a comment, before anything is read; empty when there is none, and only
    /// its beginning when it is of unlikely length.
    [[nodiscard]] std::string_view FirstLine();

private:
    int_type underflow() override;
    bool ReadMore();

    std::string name_;
    std::ifstream file_;
    std::streambuf* source_;
    std::string held_;  ///< read from the source and not handed on yet
    std::istream stream_;
};

/// Reads all traces, "-" being standard input, and lays the configuration file, if it has a name, over each.
/// Complains about everything that is wrong; then there is no result.
[[nodiscard]] std::optional<std::vector<Replay::Trace>> ReadInputs(const std::vector<std::string>& names,
                                                                   const std::string& config, Progress& progress);

}  // namespace TARN::Cli

#endif  // CLI_INPUTS_H
