#ifndef PLATFORM_APP_STATE_DATA_H
#define PLATFORM_APP_STATE_DATA_H

#include <cstdint>
#include <string>

namespace TARN::AppExecFwk {

/// What became of a process of an application.
enum class AppState : uint8_t { STARTED, FOREGROUND, BACKGROUND, ENDED };

/// One process of an application as the application manager reports it when it is in the foreground or its state
/// changes. `bundleName` is the application's first bundle, the process's name where it has none.
struct AppStateData {
    std::string bundleName;
    int32_t pid = -1;
    int32_t uid = -1;
    AppState state = AppState::BACKGROUND;
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_APP_STATE_DATA_H
