#include "sleep_shared_pref.h"

#include "preferences_helper.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using NativePreferences::PreferencesHelper;

const std::string g_path = "/data/service/el1/public/device_standby/sleep_shared_pref.xml";

}  // namespace

const std::string SleepSharedPref::IS_PROXIMITY_ERROR = "is_proximity_error";

bool SleepSharedPref::GetBoolSettings(const std::string& key, const bool& defaultValue) {
    int errCode = 0;
    const auto pref = PreferencesHelper::GetPreferences(g_path, errCode);
    if (pref == nullptr) {
        STANDBYSERVICE_LOGE("pref is nullptr,  errCode: %{public}d", errCode);
        return false;
    }
    const bool value = pref->GetBool(key, defaultValue);
    static_cast<void>(PreferencesHelper::RemovePreferencesFromCache(g_path));
    STANDBYSERVICE_LOGI("Get Bool Settings: %{public}d", value);
    return value;
}

void SleepSharedPref::UpdateBoolSettings(const std::string& key, const bool& value) {
    int errCode = 0;
    const auto pref = PreferencesHelper::GetPreferences(g_path, errCode);
    if (pref == nullptr) {
        STANDBYSERVICE_LOGE("pref is nullptr,  errCode: %{public}d", errCode);
        return;
    }
    static_cast<void>(pref->PutBool(key, value));
    static_cast<void>(pref->FlushSync());
    static_cast<void>(PreferencesHelper::RemovePreferencesFromCache(g_path));
}

}  // namespace TARN::DevStandbyMgr
