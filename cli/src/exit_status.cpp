#include "exit_status.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "json_fields.h"
#include "plain_text.h"

namespace TARN::Cli {

Failure FailureOf(const std::exception& error) {
    const bool isInput = dynamic_cast<const DevStandbyMgr::InputError*>(&error) != nullptr;
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
    return {isInput ? kInputWrong : kRunFailed, isMemory ? "out of memory" : error.what()};
}

void Complain(const std::string& text) {
    std::string line = "standby: " + text;
    line.erase(line.find_last_not_of('\n') + 1);
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::fprintf(stderr, "%s\n", DevStandbyMgr::Tame(line).c_str());
}

}  // namespace TARN::Cli
