#ifndef REPLAY_LOG_NAMES_H
#define REPLAY_LOG_NAMES_H

#include <optional>
#include <string_view>

#include "log_service.h"

namespace TARN::Replay {

/// A level's name: debug, info, warn, error.
[[nodiscard]] std::string_view LevelName(LogLevel level) noexcept;

/// The level of that name.
[[nodiscard]] std::optional<LogLevel> LevelNamed(std::string_view name) noexcept;

/// A source file's name without its ending.
[[nodiscard]] std::string_view SourceName(std::string_view file) noexcept;

}  // namespace TARN::Replay

#endif  // REPLAY_LOG_NAMES_H
