#ifndef STORY_CALL_RESULT_H
#define STORY_CALL_RESULT_H

#include <string>

#include <nlohmann/json.hpp>

namespace TARN::Story {

using Json = nlohmann::ordered_json;

/// Whether an operation's result, a status or a bool, says that it failed.
[[nodiscard]] inline bool IsFailure(const Json& result) {
    return result.is_boolean() ? !result.get<bool>() : result.is_number_integer() && result.get<int64_t>() != 0;
}

/// The code of a failure, for a person: " (code 5)", nothing where there is only a refusal.
[[nodiscard]] inline std::string FailureCode(const Json& result) {
    return result.is_number_integer() ? " (code " + std::to_string(result.get<int64_t>()) + ")" : std::string();
}

}  // namespace TARN::Story

#endif  // STORY_CALL_RESULT_H
