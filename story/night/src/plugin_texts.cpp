#include "plugin_texts.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace TARN::Story {

namespace {

using M = Meaning;
using S = Subject;

constexpr std::string_view kOffByOthers = "stays off: somebody else switched it off";
constexpr std::string_view kNotEntered = "stays on: the ledger cannot be written";

constexpr std::array kTexts = {
    PluginText{"common_event_listener_ext", "SubscribeCommonEvent occur exception", M::FAILED, S::SERVICE,
               "the plugin hears of no unlock and not all of the user's sleep: its listener was refused"},
    PluginText{"common_event_listener_ext", "UnsubscribeCommonEvent occur exception", M::FAILED, S::SERVICE,
               "the plugin's listener could not be taken back"},
    PluginText{"constraint_manager_adapter", "the movement service does not answer", M::NOTED, S::STATE,
               "the movement service does not answer: the phone counts as still"},
    PluginText{"freeze_strategy", "FreezedNativeProcess size is", M::KEPT, S::FREEZE,
               "left alone: no running native is in the list of FREEZE"},
    PluginText{"freeze_strategy", "GetAllowList failed!", M::FAILED, S::FREEZE,
               "froze nothing: the exemptions cannot be read"},
    PluginText{"freeze_strategy", "connect to app ability service failed", M::FAILED, S::FREEZE,
               "froze nothing: the running processes cannot be read"},
    PluginText{"host_dump", "the "},
    PluginText{"host_listeners", "the system's broadcasts could not be had", M::FAILED, S::SERVICE,
               "the service hears neither of screen nor of charger: its listener was refused; tried again later"},
    PluginText{"host_listeners", "the system's broadcasts could not be unsubscribed", M::FAILED, S::SERVICE,
               "the service's listener could not be taken back"},
    PluginText{"host_listeners", "the continuous tasks could not be had", M::FAILED, S::SERVICE,
               "the service is not told of continuous tasks, and tries again later"},
    PluginText{"idle_firewall", "the device-idle policy was refused"},
    PluginText{"idle_firewall", "the trust list could not be read", M::FAILED, S::SERVICE,
               "the firewall's trust list cannot be read back: what was told before is taken as so"},
    PluginText{"idle_firewall", "the trust list could not be emptied"},
    PluginText{"network_strategy", "the trust list was refused"},
    PluginText{"open_phone_plugin", "plugin register succeed", M::STARTS},
    PluginText{"owned_tasks", "", M::FAILED, S::SERVICE, "a task of the service was not taken, and is lost"},
    PluginText{"phone_network_strategy", "PhoneNetWorkStrategy is now OnDestroy", M::STOPS},
    PluginText{"phone_network_strategy", "current is AI sleeping", M::KEPT, S::FIREWALL, "stays on: the user sleeps",
               "when the user wakes"},
    PluginText{"phone_network_strategy", "get exemption config err", M::FAILED_UNTOLD, S::FIREWALL,
               "left as it is: the exemptions cannot be read"},
    PluginText{"phone_strategy_manager_adapter_ext", "standby service ptr is nullptr", M::FAILED, S::SERVICE,
               "the configuration cannot be had: the plugin does nothing"},
    PluginText{"phone_strategy_manager_adapter_ext", "strategies is disabled", M::NOTED, S::SERVICE,
               "no strategies are configured: the plugin does nothing"},
    PluginText{"power_off_strategy", "PowerOffStrategy is OnDestroy now", M::STOPS},
    PluginText{"power_off_strategy", "PublishCommonEvent for ctrl network failed"},
    PluginText{"power_off_strategy", "bluetooth is already off", M::KEPT_RADIO, S::BLUETOOTH, "off already"},
    PluginText{"power_off_strategy", "bluetooth is in connecting state", M::KEPT_RADIO, S::BLUETOOTH,
               "stays on: a device is connected"},
    PluginText{"power_off_strategy", "can not get wifiDevice", M::FAILED_UNTOLD, S::WIFI,
               "cannot be switched: the phone offers no wifi"},
    PluginText{"power_off_strategy", "current is airplane mode", M::KEPT_AIRPLANE, S::BLUETOOTH,
               "left alone: airplane mode"},
    PluginText{"power_off_strategy", "discomponent is connecting", M::KEPT_RADIO, S::BLUETOOTH,
               "stays on: a distributed component is connected"},
    PluginText{"power_off_strategy", "do not need enable Modem", M::NOTHING_OWED, S::MODEM},
    PluginText{"power_off_strategy", "do not need enable bluetooth", M::NOTHING_OWED, S::BLUETOOTH},
    PluginText{"power_off_strategy", "do not need enable wifi", M::NOTHING_OWED, S::WIFI},
    PluginText{"power_off_strategy", "do not need repeatedly disable bluetooth", M::KEPT_RADIO, S::BLUETOOTH,
               "off already, by the plugin"},
    PluginText{"power_off_strategy", "dump power off record failed", M::FAILED, S::FILE,
               "the record of what is off cannot be written"},
    PluginText{"power_off_strategy", "failed enable wifi"},
    PluginText{"power_off_strategy", "failed to disable classic bluetooth"},
    PluginText{"power_off_strategy", "failed to enable ble bluetooth"},
    PluginText{"power_off_strategy", "has already been power off state", M::KEPT_RADIO, S::BLUETOOTH},
    PluginText{"power_off_strategy", "load power off record failed", M::FAILED_OFF, S::FILE,
               "what is off stays off: the record of it cannot be read"},
    PluginText{"power_off_strategy", "power off net because of ecm", M::FULL_SAVING},
    PluginText{"power_off_strategy", "query airplaneMode failed", M::NOTED, S::DEVICE,
               "airplane mode cannot be read, taken as off"},
    PluginText{"power_off_strategy", "succeed in disabling bluetooth"},
    PluginText{"power_off_strategy", "succeed in enabling bluetooth"},
    PluginText{"power_off_strategy", "telephone is calling", M::KEPT_RADIO, S::BLUETOOTH, "stays on: a call"},
    PluginText{"power_off_strategy", "failed to start timer", M::FAILED, S::WIFI,
               "wifi and modem stay on: the timer of full power saving cannot be started"},
    PluginText{"power_save_clean_strategy", "continuous task type: ", M::SPARES},
    PluginText{"power_save_clean_strategy", "failed to kill process"},
    PluginText{"power_save_clean_strategy", "get all running processes failed", M::FAILED, S::CLEAN,
               "killed nothing: the running apps cannot be read"},
    PluginText{"power_save_clean_strategy", "get fg running processes failed", M::FAILED, S::CLEAN,
               "killed nothing: the apps in the foreground cannot be read"},
    PluginText{"power_save_clean_strategy", "tagList is null", M::NOTED, S::CLEAN,
               "spares system apps: POWER_SAVE_CLEAN is not configured"},
    PluginText{"power_save_network_strategy", "failed to SetFirewallAllowedList"},
    PluginText{"power_save_network_strategy", "get exemption config err", M::FAILED_UNTOLD, S::FIREWALL,
               "left as it is: the exemptions cannot be read"},
    PluginText{"push_strategy", "PublishCommonEvent for"},
    PluginText{"push_strategy", "PushStrategy is now OnDestroy", M::STOPS},
    PluginText{"radio_book", "forgotten: bluetooth ", M::FORGOTTEN, S::BLUETOOTH},
    PluginText{"radio_book", "forgotten: modem ", M::FORGOTTEN, S::MODEM},
    PluginText{"radio_book", "forgotten: wifi ", M::FORGOTTEN, S::WIFI},
    PluginText{"radio_book", "left off: bluetooth ", M::KEPT, S::BLUETOOTH, kOffByOthers},
    PluginText{"radio_book", "left off: modem ", M::KEPT, S::MODEM, kOffByOthers},
    PluginText{"radio_book", "left off: wifi ", M::KEPT, S::WIFI, kOffByOthers},
    PluginText{"radio_book", "not switched off: bluetooth ", M::FAILED, S::BLUETOOTH, kNotEntered},
    PluginText{"radio_book", "not switched off: modem ", M::FAILED, S::MODEM, kNotEntered},
    PluginText{"radio_book", "not switched off: wifi ", M::FAILED, S::WIFI, kNotEntered},
    PluginText{"radio_book", "not switched on: "},
    PluginText{"radio_book", "the ledger cannot be read", M::FAILED, S::FILE,
               "the ledger cannot be read: a radio that was off before may stay off"},
    PluginText{"radio_book", "the ledger could not be written", M::FAILED, S::FILE, "the ledger cannot be written"},
    PluginText{"running_applications", "the running applications could not", M::FAILED, S::SERVICE,
               "the running apps cannot be read: what was known of them counts"},
    PluginText{"running_applications", "the continuous tasks could not", M::FAILED, S::SERVICE,
               "the continuous tasks cannot be read: what was known of them counts"},
    PluginText{"running_applications", "the foreground applications could not", M::FAILED, S::SERVICE,
               "the apps in the foreground cannot be read: what was known of them counts"},
    PluginText{"running_applications", "", M::FAILED, S::SERVICE,
               "apps that cannot be classified count as not the system's"},
    PluginText{"running_lock_strategy", "running locks were not"},
    PluginText{"running_lock_strategy", "the native processes could not"},
    PluginText{"running_lock_strategy", "the proxied running locks could not", M::FAILED, S::SERVICE,
               "whose running locks are proxied cannot be read back: what was told before is taken as so"},
    PluginText{"running_lock_strategy_ext", "connect to app ability service failed", M::FAILED_UNTOLD, S::LOCK,
               kNativesLeftOut},
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
    PluginText{"sleep_clean_strategy", "query user_setup_complete failed", M::NOTED, S::DEVICE,
               "whether the phone is set up cannot be read, taken as no"},
    PluginText{"sleep_clean_strategy", "tagList is null", M::NOTED, S::CLEAN,
               "spares system apps: SLEEP_CLEAN is not configured"},
    PluginText{"sleep_data_collecter", "query nearest alarm clock failed", M::NOTED, S::ALARM,
               "no next alarm can be read"},
    PluginText{"sleep_data_collecter", "update proximity error state to 0", M::NOTED, S::SLEEP,
               "the proximity sensor is trusted again"},
    PluginText{"sleep_data_collecter", "update proximity error state to 1", M::NOTED, S::SLEEP,
               "the proximity sensor is no longer trusted: dark, but nothing near"},
    PluginText{"sleep_data_collecter", "activate sensor failed", M::FAILED, S::DEVICE,
               "a sensor cannot be switched on: this look reads no light and no proximity"},
    PluginText{"sleep_data_collecter", "deactivate sensor failed", M::FAILED, S::DEVICE,
               "a sensor cannot be switched off: it stays on after the look"},
    PluginText{"sleep_data_collecter", "do not find any usable sensor", M::NOTED, S::DEVICE,
               "neither light nor proximity can be read: there is no sensor for them"},
    PluginText{"sleep_data_collecter", "get all sensors failed", M::FAILED, S::DEVICE,
               "the list of sensors cannot be read"},
    PluginText{"sleep_data_collecter", "subscribe sensor failed", M::FAILED, S::DEVICE,
               "a sensor cannot be listened to: this look reads no light and no proximity"},
    PluginText{"sleep_data_collecter", "unsubscribe sensor failed", M::FAILED, S::DEVICE,
               "a sensor cannot be given back after the look"},
    PluginText{"sleep_detection_strategy", "PublishCommonEvent for user slp state changed fail"},
    PluginText{"sleep_detection_strategy", "calling now", M::HEARS_CALL},
    PluginText{"sleep_detection_strategy", "playing or recording audio now", M::HEARS_AUDIO},
    PluginText{"sleep_detection_strategy", "predict baseline result: ", M::JUDGES},
    PluginText{"sleep_detection_strategy", "sporting now", M::SEES_SPORT},
    PluginText{"sleep_detection_strategy", "standby stopped because the time is near or later than alarm",
               M::WAKEUP_NEAR},
    PluginText{"sleep_detection_strategy", "update IsEnhanceModelBetter to ", M::NOTED, S::SLEEP,
               "the stricter rule ends after three days"},
    PluginText{"sleep_shared_pref", "pref is nullptr", M::FAILED, S::FILE,
               "whether the proximity sensor is trusted can neither be kept nor read"},
    PluginText{"standby_datashare_helper", "StandbyDataShareHelper query failed,go to first row error"},
    PluginText{"standby_datashare_helper", "CreateDataShareHelper"},
    PluginText{"standby_datashare_helper", "StandbyDataShareHelper query error"},
    PluginText{"standby_service_impl", "message ", M::FAILED, S::SERVICE, "a message could not be queued, and is lost"},
    PluginText{"standby_service_impl", "the exemptions for", M::FAILED, S::SERVICE,
               "the exemptions cannot be read: what was known of them counts"},
    PluginText{"standby_service_impl", "the plugin's constraint manager did not initialise", M::FAILED, S::SERVICE,
               "the plugin's constraints did not start"},
    PluginText{"standby_service_impl", "the plugin's listener manager did not initialise", M::NOTED, S::SERVICE,
               "the plugin listens to no broadcast of its own, as on a watch"},
    PluginText{"standby_service_impl", "the plugin's state manager did not initialise", M::FAILED, S::SERVICE,
               "the plugin's states did not start"},
    PluginText{"standby_service_impl", "the plugin's strategy manager did not initialise"},
    PluginText{"state_manager_adapter", "the power manager does not tell"},
    PluginText{"timer_strategy_ext",
               "is charging or screen on, do not exec unified",
               M::KEPT_TIMERS,
               S::TIMER,
               {},
               "when the screen goes off without a charger"},
    PluginText{"timer_strategy_ext", "tagList is null", M::NOTED, S::TIMER,
               "no app is exempt from stretching: TIMER_ADJUST is not configured"},
    PluginText{"user_sleep_power_off_strategy", "cur userSleepState is"},
    PluginText{"user_sleep_power_off_strategy", "current is airplane mode", M::KEPT_AIRPLANE, S::BLUETOOTH,
               "left alone: airplane mode"},
    PluginText{"user_sleep_power_off_strategy", "has already been power off state", M::KEPT_RADIO, S::BLUETOOTH},
    PluginText{"user_sleep_power_off_strategy", "timer of recover netlimit is nullptr", M::FAILED, S::SERVICE,
               "nothing puts the sleeping user's firewall up again after deep standby: there is no timer for it"},
};
static_assert(std::is_sorted(kTexts.begin(), kTexts.end(),
                             [](const PluginText& a, const PluginText& b) { return a.file < b.file; }));

}  // namespace

std::span<const PluginText> PluginTexts() noexcept {
    return kTexts;
}

const PluginText* FindPluginText(std::string_view file, std::string_view line) noexcept {
    using Texts = std::span<const PluginText>;
    static const std::unordered_map<std::string_view, Texts> kByFile = [] {
        std::unordered_map<std::string_view, Texts> byFile;
        for (const auto* first = kTexts.begin(); first != kTexts.end();) {
            const auto* const last =
                std::find_if(first, kTexts.end(), [&](const auto& one) { return one.file != first->file; });
            byFile.emplace(first->file, Texts(first, last));
            first = last;
        }
        return byFile;
    }();
    const auto texts = kByFile.find(file);
    if (texts == kByFile.end()) {
        return nullptr;
    }
    const auto found = std::find_if(texts->second.begin(), texts->second.end(),
                                    [&](const PluginText& one) { return line.starts_with(one.text); });
    return found == texts->second.end() ? nullptr : &*found;
}

}  // namespace TARN::Story
