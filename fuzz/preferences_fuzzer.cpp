// Has the plugin find made-up bytes as its preferences.
#include <cstdint>
#include <string>

#include "fuzzed_phone.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    TARN::Fuzz::PlayWithFile("sleep_shared_pref.xml", std::string(data, data + size));
    return 0;
}
