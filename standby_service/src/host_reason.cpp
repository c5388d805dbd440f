#include "host_reason.h"

#include <array>

#include "bits_in_words.h"

namespace TARN::DevStandbyMgr {

std::string_view CauseName(StateCause cause) noexcept {
    static constexpr std::array<std::string_view, 11> kNames = {
        "start", "screen_on",       "screen_off",       "charging",  "discharging", "moved",
        "time",  "maintenance_due", "maintenance_over", "unblocked", "asked"};
    static_assert(kNames.size() == static_cast<size_t>(StateCause::ASKED) + 1);
    return kNames[static_cast<size_t>(cause)];
}

std::string DescribeQuestions(uint8_t questions) {
    struct Entry {
        uint8_t bit;
        const char* words;
    };
    static constexpr Entry kQuestions[] = {{Question::APPLICATIONS, "the running applications"},
                                           {Question::SYSTEM, "which applications belong to the system"},
                                           {Question::ALLOW_LIST, "the allow list"},
                                           {Question::RESTRICT_SET, "the restrict set"},
                                           {Question::TASKS, "the continuous tasks"},
                                           {Question::FOREGROUND, "the foreground applications"},
                                           {Question::NATIVES, "the native processes"}};
    return BitsInWords(kQuestions, questions);
}

}  // namespace TARN::DevStandbyMgr
