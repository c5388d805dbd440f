#include <exception>
#include <variant>

#include "command_line.h"
#include "diff_command.h"
#include "dump_command.h"
#include "exit_status.h"
#include "output_file.h"
#include "replay_command.h"
#include "shell_command.h"
#include "why_command.h"

namespace {

using namespace TARN::Cli;

int Do(const TextRequest& request, OutputFile& output) {
    output.Stream() << request.text;
    return output.Finish();
}

int Do(const ReplayOptions& options, OutputFile& output) {
    return RunReplay(options, output);
}

int Do(const DumpOptions& options, OutputFile& output) {
    return RunDump(options, output);
}

int Do(const DiffOptions& options, OutputFile& output) {
    return RunDiff(options, output);
}

int Do(const WhyOptions& options, OutputFile& output) {
    return RunWhy(options, output);
}

int Do(const ShellOptions& options, OutputFile& output) {
    return RunShell(options, output);
}

int Do(const CommandLineError& error, OutputFile& /*output*/) {
    Complain(error.text);
    return kInputWrong;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        KeepStandardStreams();
        OutputFile output;
        return std::visit([&output](const auto& request) { return Do(request, output); }, ParseCommandLine(argc, argv));
    } catch (const std::exception& error) {
        Complain(error.what());
        return kRunFailed;
    }
}
