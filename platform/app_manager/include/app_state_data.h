#ifndef PLATFORM_APP_STATE_DATA_H
#define PLATFORM_APP_STATE_DATA_H

#include <cstdint>
#include <string>

namespace TARN::AppExecFwk {

/// One application as the application manager reports it when it is in the foreground or changes place.
struct AppStateData {
    std::string bundleName;
    int32_t pid = -1;
    int32_t uid = -1;
    bool isForeground = false;
};

}  // namespace TARN::AppExecFwk

#endif  // PLATFORM_APP_STATE_DATA_H
