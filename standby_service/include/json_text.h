#ifndef STANDBY_SERVICE_JSON_TEXT_H
#define STANDBY_SERVICE_JSON_TEXT_H

#include <cstdint>
#include <string>

#include <nlohmann/json.hpp>

namespace TARN::DevStandbyMgr {

enum class JsonComments : uint8_t { REFUSED, SKIPPED };

/// Reads JSON as people write it. Throws InputError "not JSON ..., column 5: what is wrong; expected ..." for any other
/// text, `expected` being what should stand there, and for an object that has a key twice, of which one would be lost.
[[nodiscard]] nlohmann::json ParseJson(const std::string& text, const std::string& expected,
                                       JsonComments comments = JsonComments::REFUSED);

/// Whether text that is no JSON could go on to be some: it was cut off.
[[nodiscard]] bool IsCutOffJson(const std::string& text);

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_JSON_TEXT_H
