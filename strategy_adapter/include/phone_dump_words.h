#ifndef STRATEGY_ADAPTER_PHONE_DUMP_WORDS_H
#define STRATEGY_ADAPTER_PHONE_DUMP_WORDS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "standby_constants.h"

namespace TARN::DevStandbyMgr {

/// Whether the dump argument at `position` is `word`; a missing argument is no word.
[[nodiscard]] inline bool IsWordAt(const std::vector<std::string>& args, size_t position, std::string_view word) {
    return position < args.size() && args[position] == word;
}

/// Whether the strategies are asked for their details.
[[nodiscard]] inline bool AsksForDetails(const std::vector<std::string>& args) {
    return IsWordAt(args, DUMP_FIRST_PARAM, DUMP_DETAIL_INFO) && IsWordAt(args, DUMP_SECOND_PARAM, DUMP_STRATGY_DETAIL);
}

}  // namespace TARN::DevStandbyMgr

#endif  // STRATEGY_ADAPTER_PHONE_DUMP_WORDS_H
