#ifndef SLEEP_DETECTION_SLEEP_SHARED_PREF_H
#define SLEEP_DETECTION_SLEEP_SHARED_PREF_H

#include <string>

namespace TARN::DevStandbyMgr {

/// Flags that survive restarts of the service, in one small file that is opened, used and dropped each time.
class SleepSharedPref {
public:
    /// "is_proximity_error": the proximity sensor has been judged unreliable.
    static const std::string IS_PROXIMITY_ERROR;

    /// The stored flag; `defaultValue` when it is absent, false when the file cannot be opened.
    [[nodiscard]] static bool GetBoolSettings(const std::string& key, const bool& defaultValue);

    /// Stores a flag; it is lost when the file cannot be opened.
    static void UpdateBoolSettings(const std::string& key, const bool& value);
};

}  // namespace TARN::DevStandbyMgr

#endif  // SLEEP_DETECTION_SLEEP_SHARED_PREF_H
