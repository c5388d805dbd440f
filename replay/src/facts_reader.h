#ifndef REPLAY_FACTS_READER_H
#define REPLAY_FACTS_READER_H

#include <string>

#include "json_value.h"
#include "trace.h"

namespace TARN::Replay {

/// What facts are read against.
struct FactsContext {
    bool isAutomatic;                      ///< the host computes the condition: the key is refused
    int64_t t;                             ///< when they change
    const std::vector<int32_t>& accounts;  ///< those that are active before
};

/// Reads an object of facts. The time zone must be in use. Throws InputError.
[[nodiscard]] SetStep ReadFacts(const DevStandbyMgr::JsonValue& object, const std::string& name,
                                const FactsContext& context);

}  // namespace TARN::Replay

#endif  // REPLAY_FACTS_READER_H
