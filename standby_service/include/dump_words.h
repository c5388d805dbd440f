#ifndef STANDBY_SERVICE_DUMP_WORDS_H
#define STANDBY_SERVICE_DUMP_WORDS_H

#include <string>
#include <vector>

#include "standby_constants.h"

namespace TARN::DevStandbyMgr {

/// Whether the dump words ask for every detail.
[[nodiscard]] inline bool IsDetailDump(const std::vector<std::string>& args) {
    return args.size() > DUMP_SECOND_PARAM && args[DUMP_FIRST_PARAM] == DUMP_DETAIL_INFO &&
           args[DUMP_SECOND_PARAM] == DUMP_STRATGY_DETAIL;
}

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_DUMP_WORDS_H
