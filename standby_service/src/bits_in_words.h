#ifndef STANDBY_SERVICE_BITS_IN_WORDS_H
#define STANDBY_SERVICE_BITS_IN_WORDS_H

#include <cstdint>
#include <string>

namespace TARN::DevStandbyMgr {

/// The words of the bits that are set, in the table's order: "a, b"; empty for none. An entry of the table has `bit`
/// and `words`.
template <class Table>
[[nodiscard]] std::string BitsInWords(const Table& table, uint8_t bits) {
    std::string text;
    for (const auto& entry : table) {
        if ((bits & entry.bit) != 0) {
            text.append(text.empty() ? "" : ", ").append(entry.words);
        }
    }
    return text;
}

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_BITS_IN_WORDS_H
