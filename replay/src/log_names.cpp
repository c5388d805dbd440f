#include "log_names.h"

#include <array>

namespace TARN::Replay {

namespace {
constexpr std::array<std::string_view, 4> kNames = {"debug", "info", "warn", "error"};
}

std::string_view LevelName(LogLevel level) noexcept {
    return kNames[static_cast<size_t>(level)];
}

std::string_view SourceName(std::string_view file) noexcept {
    return file.substr(0, file.rfind('.'));
}

}  // namespace TARN::Replay
