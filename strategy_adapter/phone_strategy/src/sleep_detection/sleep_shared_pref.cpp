#include "sleep_shared_pref.h"

#include <memory>

#include "preferences_helper.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using NativePreferences::Preferences;
using NativePreferences::PreferencesHelper;

const std::string g_path = "/data/service/el1/public/device_standby/sleep_shared_pref.xml";

std::shared_ptr<Preferences> Open() {
    int errCode = 0;
    auto pref = PreferencesHelper::GetPreferences(g_path, errCode);
    if (pref == nullptr) {
        STANDBYSERVICE_LOGE("pref is nullptr,  errCode: %{public}d", errCode);
    }
    return pref;
}

}  // namespace

const std::string SleepSharedPref::IS_PROXIMITY_ERROR = "is_proximity_error";

bool SleepSharedPref::GetBoolSettings(const std::string& key, const bool& defaultValue) {
    const auto pref = Open();
    if (pref == nullptr) {
        return false;
    }
    const bool value = pref->GetBool(key, defaultValue);
    PreferencesHelper::RemovePreferencesFromCache(g_path);
    STANDBYSERVICE_LOGI("Get Bool Settings: %{public}d", value);
    return value;
}

void SleepSharedPref::UpdateBoolSettings(const std::string& key, const bool& value) {
    const auto pref = Open();
    if (pref == nullptr) {
        return;
    }
    pref->PutBool(key, value);
    pref->FlushSync();
    PreferencesHelper::RemovePreferencesFromCache(g_path);
}

}  // namespace TARN::DevStandbyMgr
