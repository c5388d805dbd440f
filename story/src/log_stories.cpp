#include "log_stories.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "log_names.h"

namespace TARN::Story {

namespace {

/// When a line is told.
enum class When : uint8_t {
    NEVER,      ///< everyday, or told better by what the plugin does
    CHANGED,    ///< unless it was the last thing told of its subject
    RADIO_OFF,  ///< ... and only while a radio is off
    UNTOLD,     ///< unless its instant told of its subject already
};

/// A line of the plugin's log, by its source and how it begins, in a person's words.
struct Words {
    std::string_view file;
    std::string_view text;
    When when = When::NEVER;
    Subject subject = Subject::SERVICE;
    std::string_view told = {};
    Tone tone = Tone::PLAIN;
};

/// By source. A line that is not here is silent, unless it is a warning or an error.
constexpr std::array kWords = {
    Words{"base_network_strategy", "the device-idle policy was refused"},
    Words{"freeze_strategy", "GetAllowList failed!", When::CHANGED, Subject::FREEZE,
          "froze nothing: the exemptions cannot be read", Tone::FAILURE},
    Words{"freeze_strategy", "connect to app ability service failed", When::CHANGED, Subject::FREEZE,
          "froze nothing: the running processes cannot be read", Tone::FAILURE},
    Words{"network_strategy", "the trust list was refused"},
    Words{"phone_network_strategy", "current is AI sleeping", When::CHANGED, Subject::FIREWALL,
          "stays on: the user sleeps"},
    Words{"phone_strategy_manager_adapter_ext", "strategies is disabled", When::CHANGED, Subject::SERVICE,
          "no strategies are configured: the plugin does nothing"},
    Words{"power_off_strategy", "PublishCommonEvent for ctrl network failed"},
    Words{"power_off_strategy", "bluetooth is already off", When::CHANGED, Subject::BLUETOOTH, "off already"},
    Words{"power_off_strategy", "bluetooth is in connecting state", When::CHANGED, Subject::BLUETOOTH,
          "stays on: a device is connected"},
    Words{"power_off_strategy", "can not get wifiDevice", When::UNTOLD, Subject::WIFI,
          "cannot be switched: the phone offers no wifi", Tone::FAILURE},
    Words{"power_off_strategy", "current is airplane mode", When::CHANGED, Subject::BLUETOOTH,
          "left alone: airplane mode"},
    Words{"power_off_strategy", "discomponent is connecting", When::CHANGED, Subject::BLUETOOTH,
          "stays on: a distributed component is connected"},
    Words{"power_off_strategy", "do not need"},
    Words{"power_off_strategy", "dump power off record failed", When::CHANGED, Subject::FILE,
          "the record of what is off cannot be written", Tone::FAILURE},
    Words{"power_off_strategy", "failed enable wifi"},
    Words{"power_off_strategy", "failed to disable classic bluetooth"},
    Words{"power_off_strategy", "failed to enable ble bluetooth"},
    Words{"power_off_strategy", "has already been power off state"},
    Words{"power_off_strategy", "load power off record failed", When::RADIO_OFF, Subject::FILE,
          "what is off stays off: the record of it cannot be read", Tone::FAILURE},
    Words{"power_off_strategy", "query airplaneMode failed", When::CHANGED, Subject::DEVICE,
          "airplane mode cannot be read, taken as off"},
    Words{"power_off_strategy", "succeed in disabling bluetooth"},
    Words{"power_off_strategy", "telephone is calling", When::CHANGED, Subject::BLUETOOTH, "stays on: a call"},
    Words{"power_save_clean_strategy", "failed to kill process"},
    Words{"power_save_clean_strategy", "get all running processes failed", When::CHANGED, Subject::CLEAN,
          "killed nothing: the running apps cannot be read", Tone::FAILURE},
    Words{"power_save_clean_strategy", "get fg running processes failed", When::CHANGED, Subject::CLEAN,
          "killed nothing: the apps in the foreground cannot be read", Tone::FAILURE},
    Words{"power_save_clean_strategy", "tagList is null", When::CHANGED, Subject::CLEAN,
          "spares system apps: POWER_SAVE_CLEAN is not configured"},
    Words{"power_save_network_strategy", "failed to SetFirewallAllowedList"},
    Words{"push_strategy", "PublishCommonEvent for"},
    Words{"sleep_clean_strategy", "failed to kill process"},
    Words{"sleep_clean_strategy", "get all running processes failed", When::CHANGED, Subject::CLEAN,
          "killed nothing: the running apps cannot be read", Tone::FAILURE},
    Words{"sleep_clean_strategy", "not brush clean because not china product", When::CHANGED, Subject::CLEAN,
          "nothing to clean: the locale is not zh-Hans-CN"},
    Words{"sleep_clean_strategy", "not brush clean because not reach time interval", When::CHANGED, Subject::CLEAN,
          "waits: the last clean is less than 12 hours ago"},
    Words{"sleep_clean_strategy", "not brush clean because screen on", When::CHANGED, Subject::CLEAN,
          "waits: the screen is on"},
    Words{"sleep_clean_strategy", "not brush clean because user setup not complete", When::CHANGED, Subject::CLEAN,
          "waits: the phone is not set up yet"},
    Words{"sleep_clean_strategy", "query user_setup_complete failed"},
    Words{"sleep_clean_strategy", "tagList is null", When::CHANGED, Subject::CLEAN,
          "spares system apps: SLEEP_CLEAN is not configured"},
    Words{"sleep_data_collecter", "query nearest alarm clock failed", When::CHANGED, Subject::ALARM,
          "no next alarm can be read"},
    Words{"sleep_data_collecter", "update proximity error state to 0", When::CHANGED, Subject::SLEEP,
          "the proximity sensor is trusted again"},
    Words{"sleep_data_collecter", "update proximity error state to 1", When::CHANGED, Subject::SLEEP,
          "the proximity sensor is no longer trusted: dark, but nothing near"},
    Words{"sleep_detection_strategy", "PublishCommonEvent for user slp state changed fail"},
    Words{"sleep_detection_strategy", "update IsEnhanceModelBetter to 0", When::CHANGED, Subject::SLEEP,
          "the stricter rule ends after three days"},
    Words{"standby_datashare_helper", "StandbyDataShareHelper query failed,go to first row error"},
    Words{"timer_strategy_ext", "tagList is null", When::CHANGED, Subject::TIMER,
          "no app is exempt from stretching: TIMER_ADJUST is not configured"},
    Words{"user_sleep_power_off_strategy", "cur userSleepState is"},
    Words{"user_sleep_power_off_strategy", "current is airplane mode", When::CHANGED, Subject::BLUETOOTH,
          "left alone: airplane mode"},
    Words{"user_sleep_power_off_strategy", "has already been power off state"},
};
static_assert(std::is_sorted(kWords.begin(), kWords.end(),
                             [](const Words& a, const Words& b) { return a.file < b.file; }));

/// A line that says what sets off what follows it.
struct Trigger {
    std::string_view file;
    std::string_view text;
    Cause cause;
};

constexpr std::array kTriggers = {
    Trigger{"open_phone_plugin", "plugin register succeed", Cause::START},
    Trigger{"phone_network_strategy", "PhoneNetWorkStrategy is now OnDestroy", Cause::STOP},
    Trigger{"power_off_strategy", "PowerOffStrategy is OnDestroy now", Cause::STOP},
    Trigger{"power_off_strategy", "power off net because of ecm", Cause::FULL_POWER_SAVE},
    Trigger{"push_strategy", "PushStrategy is now OnDestroy", Cause::STOP},
    Trigger{"sleep_clean_strategy", "brush clean when sleepclean", Cause::SLEEP_CLEAN},
};

const Words* FindWords(std::string_view file, std::string_view text) {
    const auto* const first = std::lower_bound(kWords.begin(), kWords.end(), file,
                                               [](const Words& one, std::string_view name) { return one.file < name; });
    const auto* const found = std::find_if(
        first, kWords.end(), [&](const Words& one) { return one.file != file || text.starts_with(one.text); });
    return found == kWords.end() || found->file != file ? nullptr : found;
}

constexpr Subject SubjectOf(LogLevel level) {
    switch (level) {
        case LogLevel::DEBUG:
            return Subject::DEBUG_LOG;
        case LogLevel::INFO:
            return Subject::INFO_LOG;
        case LogLevel::WARN:
            return Subject::WARNING;
        default:
            return Subject::ERROR;
    }
}

/// A text without its numbers: what two lines of one kind share.
std::string Kind(std::string_view text) {
    std::string kind(text);
    std::replace_if(
        kind.begin(), kind.end(), [](char c) { return c >= '0' && c <= '9'; }, '#');
    return kind;
}

}  // namespace

void LogStories::OnLog(const LogLine& line) {
    const std::string_view file = Replay::SourceName(line.file);
    if (leastLog_ && line.level >= *leastLog_) {
        Show(line);
    }
    for (const Trigger& trigger : kTriggers) {
        if (trigger.file == file && line.text == trigger.text) {
            teller_.SetCause(trigger.cause);
        }
    }
    if (file == "sleep_detection_strategy") {
        sleep_.OnLog(line.text);
    } else if (file == "power_save_clean_strategy") {
        unsigned type = 0;
        int uid = -1;
        if (std::sscanf(std::string(line.text).c_str(), "continuous task type: %u, uid: %d", &type, &uid) == 2) {
            calls_.Processes().Spare(uid);
        }
    }
    const Words* words = FindWords(file, line.text);
    if (words == nullptr) {
        if (line.level >= LogLevel::WARN && !(leastLog_ && line.level >= *leastLog_)) {
            Complain(line);
        }
        return;
    }
    switch (words->when) {
        case When::NEVER:
            break;
        case When::RADIO_OFF:
            if (calls_.Radios().IsAnyOff()) {
                teller_.TellNew(words->subject, std::string(words->told), words->tone);
            }
            break;
        case When::UNTOLD:
            if (!teller_.HasTold(words->subject)) {
                teller_.Tell(words->subject, std::string(words->told), words->tone);
            }
            break;
        case When::CHANGED:
            teller_.TellNew(words->subject, std::string(words->told), words->tone);
            break;
    }
}

void LogStories::Show(const LogLine& line) {
    std::string text = "[" + std::string(line.file) + "(" + line.function + "):" + std::to_string(line.line) + "] ";
    teller_.Tell(SubjectOf(line.level), std::move(text.append(line.text)), Tone::QUIET);
}

void LogStories::Complain(const LogLine& line) {
    const std::string text = std::string(Replay::SourceName(line.file)) + ": " + std::string(line.text);
    const std::string kind = Kind(text);
    if (complaints_.insert(kind).second) {
        teller_.Tell(SubjectOf(line.level), text, line.level == LogLevel::ERROR ? Tone::FAILURE : Tone::PLAIN);
    } else {
        night_.Repeat(kind);
    }
}

}  // namespace TARN::Story
