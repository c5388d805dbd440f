#include "exit_status.h"

#include <algorithm>
#include <cstdio>

namespace TARN::Cli {

void Complain(const std::string& text) {
    std::string line = "standby: " + text;
    line.erase(line.find_last_not_of('\n') + 1);
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::fprintf(stderr, "%s\n", line.c_str());
}

}  // namespace TARN::Cli
