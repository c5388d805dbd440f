#include "plugin_texts.h"

#include <algorithm>
#include <array>

namespace TARN::Story {

namespace {

using M = Meaning;
using S = Subject;

constexpr std::string_view kInForce =
    "when deep standby or the user's sleep ends or the day begins, and the screen is off for half an hour again";
constexpr std::string_view kStillTried =
    "when a call or a distributed component ends, or after the power-off begins anew";
constexpr std::string_view kNextPowerOff =
    "when deep standby begins or the user falls asleep, or at the next half hour with the screen off";

constexpr std::array kTexts = {
    PluginText{"constraint_manager_adapter", "the movement service does not answer", M::NOTED, S::STATE,
               "the movement service does not answer: the phone counts as still"},
    PluginText{"freeze_strategy", "FreezedNativeProcess size is", M::KEPT, S::FREEZE,
               "left alone: no running native is in the list of FREEZE"},
    PluginText{"freeze_strategy", "GetAllowList failed!", M::FAILED, S::FREEZE,
               "froze nothing: the exemptions cannot be read"},
    PluginText{"freeze_strategy", "connect to app ability service failed", M::FAILED, S::FREEZE,
               "froze nothing: the running processes cannot be read"},
    PluginText{"idle_firewall", "the device-idle policy was refused"},
    PluginText{"network_strategy", "the trust list was refused"},
    PluginText{"open_phone_plugin", "plugin register succeed", M::STARTS},
    PluginText{"phone_network_strategy", "PhoneNetWorkStrategy is now OnDestroy", M::STOPS},
    PluginText{"phone_network_strategy", "current is AI sleeping", M::KEPT, S::FIREWALL, "stays on: the user sleeps",
               "when the user wakes"},
    PluginText{"phone_strategy_manager_adapter_ext", "strategies is disabled", M::NOTED, S::SERVICE,
               "no strategies are configured: the plugin does nothing"},
    PluginText{"power_off_strategy", "PowerOffStrategy is OnDestroy now", M::STOPS},
    PluginText{"power_off_strategy", "PublishCommonEvent for ctrl network failed"},
    PluginText{"power_off_strategy", "bluetooth is already off", M::KEPT_RADIO, S::BLUETOOTH, "off already"},
    PluginText{"power_off_strategy", "bluetooth is in connecting state", M::KEPT_RADIO, S::BLUETOOTH,
               "stays on: a device is connected", kStillTried},
    PluginText{"power_off_strategy", "can not get wifiDevice", M::FAILED_UNTOLD, S::WIFI,
               "cannot be switched: the phone offers no wifi"},
    PluginText{"power_off_strategy", "current is airplane mode", M::KEPT_RADIO, S::BLUETOOTH,
               "left alone: airplane mode", kNextPowerOff},
    PluginText{"power_off_strategy", "discomponent is connecting", M::KEPT_RADIO, S::BLUETOOTH,
               "stays on: a distributed component is connected", kStillTried},
    PluginText{"power_off_strategy", "do not need enable", M::NOTHING_OWED},
    PluginText{"power_off_strategy", "do not need repeatedly disable bluetooth", M::KEPT_RADIO, S::BLUETOOTH,
               "off already, by the plugin"},
    PluginText{"power_off_strategy", "dump power off record failed", M::FAILED, S::FILE,
               "the record of what is off cannot be written"},
    PluginText{"power_off_strategy", "failed enable wifi"},
    PluginText{"power_off_strategy", "failed to disable classic bluetooth"},
    PluginText{"power_off_strategy", "failed to enable ble bluetooth"},
    PluginText{"power_off_strategy", "has already been power off state", M::KEPT_RADIO, S::BLUETOOTH, {}, kInForce},
    PluginText{"power_off_strategy", "load power off record failed", M::FAILED_OFF, S::FILE,
               "what is off stays off: the record of it cannot be read"},
    PluginText{"power_off_strategy", "power off net because of ecm", M::FULL_SAVING},
    PluginText{"power_off_strategy", "query airplaneMode failed", M::NOTED, S::DEVICE,
               "airplane mode cannot be read, taken as off"},
    PluginText{"power_off_strategy", "succeed in disabling bluetooth"},
    PluginText{"power_off_strategy", "succeed in enabling bluetooth"},
    PluginText{"power_off_strategy", "telephone is calling", M::KEPT_RADIO, S::BLUETOOTH, "stays on: a call",
               kStillTried},
    PluginText{"power_save_clean_strategy", "continuous task type: ", M::SPARES},
    PluginText{"power_save_clean_strategy", "failed to kill process"},
    PluginText{"power_save_clean_strategy", "get all running processes failed", M::FAILED, S::CLEAN,
               "killed nothing: the running apps cannot be read"},
    PluginText{"power_save_clean_strategy", "get fg running processes failed", M::FAILED, S::CLEAN,
               "killed nothing: the apps in the foreground cannot be read"},
    PluginText{"power_save_clean_strategy", "tagList is null", M::NOTED, S::CLEAN,
               "spares system apps: POWER_SAVE_CLEAN is not configured"},
    PluginText{"power_save_network_strategy", "failed to SetFirewallAllowedList"},
    PluginText{"push_strategy", "PublishCommonEvent for"},
    PluginText{"push_strategy", "PushStrategy is now OnDestroy", M::STOPS},
    PluginText{"running_lock_strategy", "running locks were not"},
    PluginText{"sleep_clean_strategy", "brush clean when sleepclean", M::CLEANS},
    PluginText{"sleep_clean_strategy", "failed to kill process"},
    PluginText{"sleep_clean_strategy", "get all running processes failed", M::FAILED, S::CLEAN,
               "killed nothing: the running apps cannot be read"},
    PluginText{"sleep_clean_strategy", "not brush clean because not china product", M::KEPT, S::CLEAN,
               "nothing to clean: the locale is not zh-Hans-CN"},
    PluginText{"sleep_clean_strategy", "not brush clean because not reach time interval", M::KEPT, S::CLEAN,
               "waits: the last clean is less than 12 hours ago", "12 hours after the last clean, if the user sleeps"},
    PluginText{"sleep_clean_strategy", "not brush clean because screen on", M::KEPT, S::CLEAN,
               "waits: the screen is on", "looked at again every 2 minutes while the user sleeps"},
    PluginText{"sleep_clean_strategy", "not brush clean because user setup not complete", M::KEPT, S::CLEAN,
               "waits: the phone is not set up yet", "looked at again every 2 minutes while the user sleeps"},
    PluginText{"sleep_clean_strategy", "query user_setup_complete failed"},
    PluginText{"sleep_clean_strategy", "tagList is null", M::NOTED, S::CLEAN,
               "spares system apps: SLEEP_CLEAN is not configured"},
    PluginText{"sleep_data_collecter", "query nearest alarm clock failed", M::NOTED, S::ALARM,
               "no next alarm can be read"},
    PluginText{"sleep_data_collecter", "update proximity error state to 0", M::NOTED, S::SLEEP,
               "the proximity sensor is trusted again"},
    PluginText{"sleep_data_collecter", "update proximity error state to 1", M::NOTED, S::SLEEP,
               "the proximity sensor is no longer trusted: dark, but nothing near"},
    PluginText{"sleep_detection_strategy", "PublishCommonEvent for user slp state changed fail"},
    PluginText{"sleep_detection_strategy", "calling now", M::HEARS_CALL},
    PluginText{"sleep_detection_strategy", "playing or recording audio now", M::HEARS_AUDIO},
    PluginText{"sleep_detection_strategy", "predict baseline result: ", M::JUDGES},
    PluginText{"sleep_detection_strategy", "sporting now", M::SEES_SPORT},
    PluginText{"sleep_detection_strategy", "standby stopped because the time is near or later than alarm",
               M::WAKEUP_NEAR},
    PluginText{"sleep_detection_strategy", "update IsEnhanceModelBetter to ", M::NOTED, S::SLEEP,
               "the stricter rule ends after three days"},
    PluginText{"standby_datashare_helper", "StandbyDataShareHelper query failed,go to first row error"},
    PluginText{"timer_strategy_ext",
               "is charging or screen on, do not exec unified",
               M::KEPT_TIMERS,
               S::TIMER,
               {},
               "when the screen goes off without a charger"},
    PluginText{"timer_strategy_ext", "tagList is null", M::NOTED, S::TIMER,
               "no app is exempt from stretching: TIMER_ADJUST is not configured"},
    PluginText{"user_sleep_power_off_strategy", "cur userSleepState is", M::NOTHING_OWED},
    PluginText{"user_sleep_power_off_strategy", "current is airplane mode", M::KEPT_RADIO, S::BLUETOOTH,
               "left alone: airplane mode", kNextPowerOff},
    PluginText{
        "user_sleep_power_off_strategy", "has already been power off state", M::KEPT_RADIO, S::BLUETOOTH, {}, kInForce},
};
static_assert(std::is_sorted(kTexts.begin(), kTexts.end(),
                             [](const PluginText& a, const PluginText& b) { return a.file < b.file; }));

}  // namespace

std::span<const PluginText> PluginTexts() noexcept {
    return kTexts;
}

const PluginText* FindPluginText(std::string_view file, std::string_view line) noexcept {
    const auto* const first =
        std::lower_bound(kTexts.begin(), kTexts.end(), file,
                         [](const PluginText& one, std::string_view name) { return one.file < name; });
    const auto* const found = std::find_if(
        first, kTexts.end(), [&](const PluginText& one) { return one.file != file || line.starts_with(one.text); });
    return found == kTexts.end() || found->file != file ? nullptr : found;
}

}  // namespace TARN::Story
