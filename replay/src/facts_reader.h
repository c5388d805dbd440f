#ifndef REPLAY_FACTS_READER_H
#define REPLAY_FACTS_READER_H

#include <string>

#include <nlohmann/json.hpp>

#include "trace.h"

namespace TARN::Replay {

/// Reads an object of facts. The key "condition" is refused where the host computes it. Throws InputError.
[[nodiscard]] SetStep ReadFacts(const nlohmann::json& object, const std::string& name, bool isAutomatic);

}  // namespace TARN::Replay

#endif  // REPLAY_FACTS_READER_H
