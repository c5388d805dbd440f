#include "standby_datashare_helper.h"

#include <vector>

#include "standby_service_log.h"
#include "system_ability_manager_client.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr char kSettingsUri[] = "datashare:///com.tarn.settingsdata?Proxy=true";
constexpr char kKeyColumn[] = "KEYWORD";
constexpr char kValueColumn[] = "VALUE";

}  // namespace

StandbyDataShareHelper::StandbyDataShareHelper(int systemAbilityId)
    : dataShareHelper_(CreateDataShareHelper(systemAbilityId)) {}

std::shared_ptr<DataShare::DataShareHelper> StandbyDataShareHelper::CreateDataShareHelper(int systemAbilityId) {
    const auto manager = SystemAbilityManagerClient::GetInstance().GetSystemAbilityManager();
    if (manager == nullptr) {
        STANDBYSERVICE_LOGE("CreateDataShareHelper GetSystemAbilityManager failed.");
        return nullptr;
    }
    const auto remote = manager->GetSystemAbility(systemAbilityId);
    if (remote == nullptr) {
        STANDBYSERVICE_LOGE("CreateDataShareHelper GetSystemAbility Service failed.");
        return nullptr;
    }
    STANDBYSERVICE_LOGI("CreateDataShareHelper creator. systemAbilityId:%{public}d", systemAbilityId);
    return DataShare::DataShareHelper::Creator(remote, kSettingsUri, "");
}

ErrCode StandbyDataShareHelper::Query(Uri& uri, const std::string& key, std::string& value) {
    if (dataShareHelper_ == nullptr) {
        STANDBYSERVICE_LOGE("StandbyDataShareHelper query error, dataShareHelper_ is nullptr");
        return PhoneStatus::DATA_SHARE_UNAVAILABLE;
    }
    DataShare::DataSharePredicates predicates;
    predicates.EqualTo(kKeyColumn, key);
    std::vector<std::string> columns;
    const auto result = dataShareHelper_->Query(uri, predicates, columns, nullptr);
    if (result == nullptr) {
        STANDBYSERVICE_LOGE("StandbyDataShareHelper query error, result is null");
        return PhoneStatus::DATA_SHARE_QUERY;
    }
    if (result->GoToFirstRow() != PhoneStatus::OK) {
        STANDBYSERVICE_LOGE("StandbyDataShareHelper query failed,go to first row error");
        static_cast<void>(result->Close());
        return PhoneStatus::DATA_SHARE_QUERY;
    }
    int index = 0;
    static_cast<void>(result->GetColumnIndex(kValueColumn, index));
    static_cast<void>(result->GetString(index, value));
    static_cast<void>(result->Close());
    STANDBYSERVICE_LOGI("StandbyDataShareHelper query success,value[%{public}s]", value.c_str());
    return PhoneStatus::OK;
}

}  // namespace TARN::DevStandbyMgr
