#include "log_names.h"

#include <algorithm>
#include <array>

namespace TARN::Replay {

namespace {
constexpr std::array<std::string_view, 4> kNames = {"debug", "info", "warn", "error"};
}

std::string_view LevelName(LogLevel level) noexcept {
    return kNames[static_cast<size_t>(level)];
}

std::optional<LogLevel> LevelNamed(std::string_view name) noexcept {
    const auto found = std::find(kNames.begin(), kNames.end(), name);
    if (found == kNames.end()) {
        return std::nullopt;
    }
    return static_cast<LogLevel>(found - kNames.begin());
}

std::string_view SourceName(std::string_view file) noexcept {
    return file.substr(0, file.rfind('.'));
}

}  // namespace TARN::Replay
