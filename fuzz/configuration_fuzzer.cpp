// Reads made-up bytes as a configuration, and plays an hour in the dark with it if it is one.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "common_event_support.h"
#include "fuzzed_phone.h"
#include "json_fields.h"

using namespace TARN;

namespace {

/// A file in memory; configurations are read by name.
class MemoryFile {
public:
    MemoryFile(const uint8_t* data, size_t size) : descriptor_(::memfd_create("configuration", 0)) {
        if (descriptor_ < 0 || ::write(descriptor_, data, size) != static_cast<ssize_t>(size)) {
            std::abort();
        }
    }
    ~MemoryFile() { ::close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    [[nodiscard]] std::string Name() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

void PlayHourWith(const DevStandbyMgr::StandbyConfigFile& config) {
    Replay::Trace trace = Fuzz::Evening(Fuzz::kHourMs);
    config.LayOver(trace.host);
    Fuzz::AddStep(trace, 0, Fuzz::Broadcast(EventFwk::CommonEventSupport::COMMON_EVENT_SCREEN_OFF));
    Fuzz::AddStep(trace, 40 * Fuzz::kMinuteMs, Replay::DumpStep{{"DUMP_STRATGY_DETAIL"}});
    Fuzz::Play(trace);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const MemoryFile file(data, size);
    try {
        PlayHourWith(DevStandbyMgr::StandbyConfigFile(file.Name()));
    } catch (const DevStandbyMgr::InputError&) {
        // is what wrong input is to end in
    }
    return 0;
}
