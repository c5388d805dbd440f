#ifndef REPLAY_STEP_READER_H
#define REPLAY_STEP_READER_H

#include <span>
#include <string>
#include <vector>

#include "json_value.h"
#include "trace.h"

namespace TARN::Replay {

/// Reads the object of a step's line and puts the steps behind those that are there. Throws InputError.
void ReadSteps(const DevStandbyMgr::JsonValue& object, const StepContext& context, std::vector<Step>& steps);

/// Lines that say the steps of a line in full, one each.
[[nodiscard]] std::vector<std::string> LinesInFull(const std::string& line, const DevStandbyMgr::JsonValue& object,
                                                   std::span<const Step> steps);

}  // namespace TARN::Replay

#endif  // REPLAY_STEP_READER_H
