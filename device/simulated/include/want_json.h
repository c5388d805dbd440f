#ifndef DEVICE_SIMULATED_WANT_JSON_H
#define DEVICE_SIMULATED_WANT_JSON_H

#include <nlohmann/json.hpp>

#include "want.h"

namespace TARN::Simulated {

/// A Want's parameters as a JSON object.
[[nodiscard]] nlohmann::ordered_json ToJson(const AAFwk::Want& want);

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_WANT_JSON_H
