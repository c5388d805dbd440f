#include "device.h"

#include <cstdio>
#include <cstdlib>

#include "log_format.h"

namespace TARN {

namespace {
Device* g_installed = nullptr;
}

void Device::Install(Device* device) noexcept {
    g_installed = device;
    Log::SetLeastLevel(device == nullptr ? LogLevel::NONE : device->Log().LeastLevel());
}

Device* Device::Installed() noexcept {
    return g_installed;
}

Device& Device::Current() noexcept {
    if (g_installed == nullptr) {
        std::fputs("no device is installed\n", stderr);
        std::abort();
    }
    return *g_installed;
}

int32_t Device::Fault(std::string_view /*operation*/) const noexcept {
    return 0;
}

RadioLedger* Device::Radios() noexcept {
    return nullptr;
}

}  // namespace TARN
