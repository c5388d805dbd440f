#ifndef STORY_APP_ANSWERS_H
#define STORY_APP_ANSWERS_H

#include <string>
#include <vector>

#include "why.h"

namespace TARN::Story {

/// How every process stands that `name` fits: its name, a bundle of it, its uid or its pid. Throws InputError when none
/// does.
[[nodiscard]] std::vector<AppAnswer> AskForApps(const Night& night, int64_t t, const std::string& name);

}  // namespace TARN::Story

#endif  // STORY_APP_ANSWERS_H
