#include "exemption_flag.h"

#include "bits_in_words.h"

namespace TARN::DevStandbyMgr {

namespace {

struct Entry {
    uint8_t bit;
    const char* words;
    std::string_view key;
};

constexpr Entry kFlags[] = {{ExemptionFlag::EXEMPTION, "on the allow list", "allow_list"},
                            {ExemptionFlag::RESTRICTED, "in the restrict set", "restrict_set"},
                            {ExemptionFlag::FOREGROUND, "in the foreground", "foreground"},
                            {ExemptionFlag::CONTINUOUS_TASK, "runs a continuous task", "continuous_task"},
                            {ExemptionFlag::UNRESTRICTED, "belongs to the system", "system"}};

}  // namespace

std::string DescribeExemption(uint8_t flags) {
    const std::string text = BitsInWords(kFlags, flags);
    return text.empty() ? "nothing exempts it" : text;
}

std::vector<std::string_view> ExemptionKeys(uint8_t flags) {
    std::vector<std::string_view> keys;
    for (const Entry& entry : kFlags) {
        if ((flags & entry.bit) != 0) {
            keys.push_back(entry.key);
        }
    }
    return keys;
}

}  // namespace TARN::DevStandbyMgr
