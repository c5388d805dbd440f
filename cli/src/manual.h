#ifndef CLI_MANUAL_H
#define CLI_MANUAL_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace TARN::Cli {

/// A file that is installed beside the program.
struct ManualFile {
    std::string path;  ///< below share/
    std::string text;
};

/// The man pages, one for the program and one a command, and the completions for bash and zsh: all that there is to
/// know of a program from what its help is made of.
[[nodiscard]] std::vector<ManualFile> MakeManual(CLI::App& app);

/// Writes the files, with the folders that they lie in, into `folder`. Throws RunError when one cannot be written.
void WriteManual(const std::vector<ManualFile>& files, const std::string& folder);

}  // namespace TARN::Cli

#endif  // CLI_MANUAL_H
