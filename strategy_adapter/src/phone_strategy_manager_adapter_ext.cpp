#include "phone_strategy_manager_adapter_ext.h"

#include <map>
#include <memory>

#include "freeze_strategy.h"
#include "phone_network_strategy.h"
#include "phone_standby_status.h"
#include "power_off_strategy.h"
#include "power_save_clean_strategy.h"
#include "push_strategy.h"
#include "running_lock_strategy_ext.h"
#include "sleep_clean_strategy.h"
#include "sleep_detection_strategy.h"
#include "standby_config_manager.h"
#include "standby_service_log.h"
#include "timer_strategy_ext.h"
#include "user_sleep_power_off_strategy.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr char kPowerOffSwitch[] = "poweroff";

/// One object for each configuration name, made when the library is loaded; they outlive UnInit.
const std::map<std::string, std::shared_ptr<IBaseStrategy>> g_strategyTable = {
    {"FREEZE", std::make_shared<FreezeStrategy>()},
    {"PUSH", std::make_shared<PushStrategy>()},
    {"NETWORK", std::make_shared<PhoneNetWorkStrategy>()},
    {"RUNNING_LOCK", std::make_shared<RunningLockStrategyExt>()},
    {"SLEEP_CLEAN", std::make_shared<SleepCleanStrategy>()},
    {"TIMER", std::make_shared<TimerStrategyExt>()},
    {"POWER_SAVE_CLEAN", std::make_shared<PowerSaveCleanStrategy>()},
};

}  // namespace

bool PhoneStrategyManagerAdapterExt::Init() {
    const auto config = StandbyConfigManager::GetInstance();
    if (config == nullptr) {
        STANDBYSERVICE_LOGE("standby service ptr is nullptr, init failed");
        return false;
    }
    const std::vector<std::string> strategies = config->GetStrategyConfigList();
    if (strategies.empty()) {
        STANDBYSERVICE_LOGI("strategies is disabled");
        return false;
    }
    RegisterPolicy(strategies);
    return true;
}

void PhoneStrategyManagerAdapterExt::RegisterPolicy(const std::vector<std::string>& strategies) {
    const auto config = StandbyConfigManager::GetInstance();
    if (config != nullptr && config->GetHalfHourSwitch(kPowerOffSwitch)) {
        Admit(std::make_shared<PowerOffStrategy>());
    }
    Admit(std::make_shared<SleepDetectionStrategy>());
    for (const std::string& name : strategies) {
        const auto entry = g_strategyTable.find(name);
        if (entry == g_strategyTable.end() || entry->second == nullptr ||
            entry->second->OnCreated() != PhoneStatus::OK) {
            continue;  // an unknown name and a strategy that refuses are skipped without a word
        }
        STANDBYSERVICE_LOGI("phone strategy manager init %{public}s", name.c_str());
        strategyList_.push_back(entry->second);
    }
    Admit(std::make_shared<UserSleepPowerOffStrategy>());
}

void PhoneStrategyManagerAdapterExt::Admit(const std::shared_ptr<IBaseStrategy>& strategy) {
    if (strategy->OnCreated() == PhoneStatus::OK) {
        strategyList_.push_back(strategy);
    }
}

void PhoneStrategyManagerAdapterExt::HandleEvent(const StandbyMessage& message) {
    for (const auto& strategy : strategyList_) {
        strategy->HandleEvent(message);
    }
}

void PhoneStrategyManagerAdapterExt::ShellDump(const std::vector<std::string>& args, std::string& result) {
    for (const auto& strategy : strategyList_) {
        strategy->ShellDump(args, result);
    }
}

bool PhoneStrategyManagerAdapterExt::UnInit() {
    for (const auto& strategy : strategyList_) {
        static_cast<void>(strategy->OnDestroy());
    }
    strategyList_.clear();
    return true;
}

}  // namespace TARN::DevStandbyMgr
