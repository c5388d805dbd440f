// Has the plugin find made-up bytes as the record of the radios that it switched off.
#include <cstdint>
#include <string>

#include "fuzzed_phone.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    TARN::Fuzz::PlayWithFile("power_off_record", std::string(data, data + size));
    return 0;
}
