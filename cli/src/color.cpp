#include "color.h"

#include <cstdlib>
#include <cstring>

namespace TARN::Cli {

bool IsColored(ColorChoice choice, const OutputFile& output) {
    if (choice != ColorChoice::AUTO) {
        return choice == ColorChoice::ALWAYS;
    }
    const char* plain = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return output.IsTerminal() && (plain == nullptr || *plain == '\0') && terminal != nullptr &&
           std::strcmp(terminal, "dumb") != 0;
}

}  // namespace TARN::Cli
