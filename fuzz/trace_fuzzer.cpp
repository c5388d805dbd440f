// Reads made-up bytes as a trace, and plays it if it is one and short.
#include <cstdint>
#include <sstream>
#include <string>

#include "fuzzed_phone.h"
#include "json_fields.h"

using namespace TARN;

namespace {

constexpr size_t kMostSteps = 100;

bool IsShort(const Replay::Trace& trace) {
    return trace.steps.size() <= kMostSteps && trace.end - trace.start <= 12 * Fuzz::kHourMs;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::istringstream input(std::string(data, data + size));
    try {
        const Replay::Trace trace = Replay::ReadTrace(input, "made up");
        if (IsShort(trace)) {
            Fuzz::Play(trace);
        }
    } catch (const DevStandbyMgr::InputError&) {
        // is what wrong input is to end in
    }
    return 0;
}
