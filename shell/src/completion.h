#ifndef SHELL_COMPLETION_H
#define SHELL_COMPLETION_H

#include <string>
#include <string_view>
#include <vector>

#include "simulated_phone.h"

namespace TARN::Shell {

/// The words that can stand where the last one of `text` begins, as the commands' usages have it; sorted.
[[nodiscard]] std::vector<std::string> Completions(std::string_view text, const Simulated::PhoneFacts& facts);

}  // namespace TARN::Shell

#endif  // SHELL_COMPLETION_H
