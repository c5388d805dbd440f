#include <exception>

#include "command_line.h"
#include "crash_line.h"
#include "exit_status.h"
#include "json_fields.h"
#include "output_file.h"

int main(int argc, char** argv) {
    using namespace TARN::Cli;
    try {
        KeepStandardStreams();
        TellOfCrashes();
        OutputFile output;
        return ParseCommandLine(argc, argv)(output);
    } catch (const TARN::DevStandbyMgr::InputError& error) {
        Complain(error.what());
        return kInputWrong;
    } catch (const std::exception& error) {
        Complain(error.what());
        return kRunFailed;
    }
}
