#ifndef STORY_APP_ANSWERS_H
#define STORY_APP_ANSWERS_H

#include <string>
#include <string_view>
#include <vector>

#include "why.h"

namespace TARN::Story {

/// How every process stands that `name` fits: its name, a bundle of it, its uid or its pid. Throws InputError when none
/// does.
[[nodiscard]] std::vector<AppAnswer> AskForApps(const Night& night, int64_t t, const std::string& name);

/// Who stands so at `t`, by name.
[[nodiscard]] std::vector<std::string> NamesWith(const Night& night, int64_t t, Aspect aspect, std::string_view value);

/// Of whom an event of the night says so, by name.
[[nodiscard]] std::vector<std::string> NamesOf(const Night& night, uint32_t event, Aspect aspect,
                                               std::string_view value);

}  // namespace TARN::Story

#endif  // STORY_APP_ANSWERS_H
