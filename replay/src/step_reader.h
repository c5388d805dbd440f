#ifndef REPLAY_STEP_READER_H
#define REPLAY_STEP_READER_H

#include <vector>

#include <nlohmann/json.hpp>

#include "trace.h"

namespace TARN::Replay {

/// Reads the object of a step's line. `line` is null where nobody wants the lines of the steps. Throws InputError.
[[nodiscard]] std::vector<WrittenStep> ReadSteps(const nlohmann::json& object, const std::string* line,
                                                 const StepContext& context);

}  // namespace TARN::Replay

#endif  // REPLAY_STEP_READER_H
