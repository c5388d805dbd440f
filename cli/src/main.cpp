#include <exception>

#include "command_line.h"
#include "crash_line.h"
#include "exit_status.h"
#include "output_file.h"

int main(int argc, char** argv) {
    using namespace TARN::Cli;
    try {
        KeepStandardStreams();
        TellOfCrashes();
        OutputFile output;
        return ParseCommandLine(argc, argv)(output);
    } catch (const std::exception& error) {
        const Failure failure = FailureOf(error);
        Complain(failure.text);
        return failure.status;
    }
}
