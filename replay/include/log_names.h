#ifndef REPLAY_LOG_NAMES_H
#define REPLAY_LOG_NAMES_H

#include <string_view>

#include "log_service.h"

namespace TARN::Replay {

/// A level's name: debug, info, warn, error.
[[nodiscard]] std::string_view LevelName(LogLevel level) noexcept;

/// A source file's name without its ending.
[[nodiscard]] std::string_view SourceName(std::string_view file) noexcept;

}  // namespace TARN::Replay

#endif  // REPLAY_LOG_NAMES_H
