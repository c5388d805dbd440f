#include "fact_stories.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "device_state_cache.h"
#include "standby_constants.h"
#include "time_zone.h"

namespace TARN::Story {

namespace {

using DevStandbyMgr::DeviceStateCache;
using DevStandbyMgr::StandbyConfig;
namespace AllowType = DevStandbyMgr::AllowType;
using Row = std::optional<std::string>;

std::string AlarmText(const Row& value) {
    const int64_t alarm = value ? std::strtoll(value->c_str(), nullptr, 10) : 0;
    return alarm > 0 ? "next alarm " + Replay::TimeZone::Format(alarm, "%a %H:%M") : "no alarm is set";
}

struct Setting {
    std::string_view keyword;
    Subject subject;
    std::string (*tell)(const Row& value);
};

constexpr std::array kSettings = {
    Setting{"nearestAlarmingTime", Subject::ALARM, AlarmText},
    Setting{"settings.telephony.airplanemode", Subject::DEVICE,
            [](const Row& value) { return std::string(value == "1" ? "airplane mode on" : "airplane mode off"); }},
};

/// Calls `tell` with each setting that the change names and that people know.
template <class Tell>
void ForSettings(const Simulated::FactsChange& change, Tell tell) {
    const auto table = change.settings.find("SETTINGSDATA");
    if (table == change.settings.end() || !table->second) {
        return;
    }
    for (const Setting& setting : kSettings) {
        if (const auto row = table->second->find(std::string(setting.keyword)); row != table->second->end()) {
            tell(setting, row->second);
        }
    }
}

std::string PluggedText(int32_t plugged) {
    return plugged == 0 ? "unplugged" : "plugged in, type " + std::to_string(plugged);
}

std::string Number(float value) {
    const double rounded = std::round(static_cast<double>(value) * 10.0) / 10.0;
    std::string text = std::to_string(rounded);
    text.erase(text.find_last_not_of('0') + 1);
    return text.back() == '.' ? text.substr(0, text.size() - 1) : text;
}

std::string MovementText(const Simulated::Movement& movement, int64_t start) {
    const std::string_view what = movement.value == 1   ? "still"
                                  : movement.value == 2 ? "moving"
                                                        : "stillness not reported";
    const bool isSince = movement.value != 0 && movement.atMs > 0 && movement.atMs <= start;
    return std::string(what) + (isSince ? " since " + Replay::TimeZone::Format(movement.atMs, "%a %H:%M") : "");
}

void Join(std::string& text, const std::string& more) {
    text += (text.empty() ? "" : ", ") + more;
}

std::string StrategiesText(const StandbyConfig& host) {
    const std::vector<std::string>& known = StandbyConfig().strategies;
    std::string text;
    for (const std::string& name : host.strategies) {
        const bool isKnown = std::find(known.begin(), known.end(), name) != known.end();
        Join(text, name + (isKnown ? "" : " (unknown: it does nothing)"));
    }
    for (const std::string& name : known) {
        if (std::find(host.strategies.begin(), host.strategies.end(), name) == host.strategies.end()) {
            Join(text, "no " + name);
        }
    }
    return host.strategies.empty() ? "none: the plugin does nothing" : text;
}

std::string HostText(const StandbyConfig& host) {
    constexpr std::array kKinds = {"phone", "tablet", "phone with day check", "watch"};
    std::string text = host.mode == DevStandbyMgr::HostMode::AUTOMATIC ? "automatic" : "scripted";
    if (host.standbyMode >= 0 && static_cast<size_t>(host.standbyMode) < kKinds.size() && host.standbyMode != 0) {
        Join(text, kKinds[static_cast<size_t>(host.standbyMode)]);
    }
    Join(text, std::string("power-off strategy ") + (IsPowerOffAlive(host) ? "on" : "off"));
    return text;
}

/// What differs from the policy a phone ships with, with what it ships with.
std::string PolicyText(const DevStandbyMgr::StandbyPolicy& policy) {
    const DevStandbyMgr::StandbyPolicy usual;
    std::string text;
    const auto tell = [&text](const char* name, int64_t value, int64_t shipped) {
        if (value != shipped) {
            Join(text, std::string(name) + " " + std::to_string(value) + " (usual: " + std::to_string(shipped) + ")");
        }
    };
    tell("nap_after_s", policy.napAfterSeconds, usual.napAfterSeconds);
    tell("sleep_after_s", policy.sleepAfterSeconds, usual.sleepAfterSeconds);
    tell("phase_every_s", policy.phaseEverySeconds, usual.phaseEverySeconds);
    tell("maintenance_s", policy.maintenanceSeconds, usual.maintenanceSeconds);
    if (policy.maintenanceAfterSeconds != usual.maintenanceAfterSeconds) {
        const auto list = [](const std::vector<int64_t>& lengths) {
            std::string numbers;
            for (const int64_t seconds : lengths) {
                numbers += (numbers.empty() ? "" : " ") + std::to_string(seconds);
            }
            return numbers;
        };
        Join(text, "maintenance_after_s " + list(policy.maintenanceAfterSeconds) +
                       " (usual: " + list(usual.maintenanceAfterSeconds) + ")");
    }
    tell("half_hour_s", policy.halfHourSeconds, usual.halfHourSeconds);
    tell("night_start_hour", policy.nightStartHour, usual.nightStartHour);
    tell("night_end_hour", policy.nightEndHour, usual.nightEndHour);
    tell("retry_after_s", policy.retryAfterSeconds, usual.retryAfterSeconds);
    if (policy.hasRadioLedger != usual.hasRadioLedger) {
        Join(text, "with a radio ledger");
    }
    return text;
}

std::string ParamsText(const StandbyConfig& host) {
    std::string text;
    for (const auto& [name, value] : host.params) {
        Join(text, name + " " + std::to_string(value));
    }
    return text;
}

std::string PhoneText(const Replay::Trace& trace) {
    const Simulated::FactsChange& change = trace.device.phone;
    const Simulated::PhoneFacts usual;
    std::string text = PluggedText(change.plugged.value_or(usual.plugged));
    const int32_t bluetooth = change.bluetoothState.value_or(usual.bluetoothState);
    const bool isConnected =
        change.bluetoothConnection.value_or(usual.bluetoothConnection) != usual.bluetoothConnection;
    Join(text, bluetooth == 2 || bluetooth == 3 ? "bluetooth off"
               : isConnected                    ? "bluetooth on with a device connected"
                                                : "bluetooth on");
    Join(text, !change.isWifiPresent.value_or(usual.isWifiPresent)  ? "no wifi"
               : change.isWifiEnabled.value_or(usual.isWifiEnabled) ? "wifi on"
                                                                    : "wifi off");
    const auto slotsOff = static_cast<int64_t>(change.slotsOff.value_or(usual.slotsOff).size());
    Join(text, Count(change.simSlots.value_or(usual.simSlots), "SIM slot") +
                   (slotsOff == 0 ? "" : ", " + std::to_string(slotsOff) + " of them off"));
    if (change.deviceMode && *change.deviceMode != usual.deviceMode) {
        Join(text, "device mode " + std::to_string(*change.deviceMode));
    }
    for (const auto& [type, isOn] : trace.device.host.deviceState) {
        if (isOn) {
            Join(text, type == DeviceStateCache::TELEPHONE_STATE_CHANGE ? "a call goes on"
                       : type == DeviceStateCache::DIS_COMP_CHANGE      ? "a distributed component is connected"
                                                                        : "device state " + std::to_string(type));
        }
    }
    ForSettings(change, [&text](const Setting& setting, const Row& value) {
        if (setting.subject == Subject::ALARM || value == "1") {
            Join(text, setting.tell(value));
        }
    });
    return text;
}

/// "network: com.a.one and com.b.two; freezing: nobody"; only those of which the trace says something.
std::string ListsText(const std::map<int32_t, std::vector<std::string>>& lists) {
    std::string text;
    for (const auto& [type, names] : lists) {
        text += (text.empty() ? "" : "; ") + NameOfLimit(type) + ": " + (names.empty() ? "nobody" : Names(names));
    }
    return text;
}

std::string SurroundingsText(const Replay::Trace& trace) {
    const Simulated::FactsChange& change = trace.device.phone;
    std::string text = MovementText(change.movement.value_or(Simulated::Movement{}), trace.start);
    const auto reading = [&text](const char* name, const auto& fact, const char* unit) {
        Join(text, fact && *fact ? name + (" " + Number(**fact)) + unit : std::string("no ") + name + " read");
    };
    reading("light", change.light, " lx");
    reading("proximity", change.proximity, "");
    return text;
}

std::string RunningText(const Replay::Trace& trace) {
    if (!trace.device.phone.processes) {
        return "nothing";
    }
    const auto& processes = *trace.device.phone.processes;
    const auto natives = std::count_if(processes.begin(), processes.end(), [](const auto& one) { return one.native; });
    return Count(static_cast<int64_t>(processes.size()) - natives, "app") + ", " + Count(natives, "native");
}

}  // namespace

std::string NameOfLimit(int32_t allowType) {
    switch (allowType) {
        case AllowType::NETWORK:
            return "network limits";
        case AllowType::RUNNING_LOCK:
            return "running-lock limits";
        case AllowType::FREEZE:
            return "freezing";
        default:
            return "limit " + std::to_string(allowType);
    }
}

bool IsPowerOffAlive(const StandbyConfig& config) {
    const auto powerOff = config.halfHourSwitches.find("poweroff");
    return !config.strategies.empty() && powerOff != config.halfHourSwitches.end() && powerOff->second;
}

void TellFacts(Scribe& scribe, const Replay::SetStep& step) {
    const Simulated::FactsChange& change = step.phone;
    for (const auto& [operation, code] : change.faults) {
        scribe.Write(
            Subject::FAULT, Outcome::HAPPENED,
            code ? operation + " fails from now on (code " + std::to_string(*code) + ")" : operation + " works again");
    }
    if (change.deviceMode) {
        scribe.WriteNew(Subject::POWER, Outcome::HAPPENED, "device mode " + std::to_string(*change.deviceMode));
    }
    if (change.plugged) {
        const Scribe::Id id =
            scribe.WriteNew(Subject::CHARGER, Outcome::HAPPENED, PluggedText(*change.plugged) + ", and nobody is told");
        scribe.At(id).use = *change.plugged != 0 ? Use::PLUGGED : Use::UNPLUGGED;
        scribe.Set(LaneId::CHARGER, *change.plugged != 0 ? "plugged" : "unplugged", 0, id);
    }
    ForSettings(change, [&scribe](const Setting& setting, const Row& value) {
        scribe.WriteNew(setting.subject, Outcome::HAPPENED, setting.tell(value));
    });
}

void TellRestricted(Scribe& scribe, const Replay::SetStep& step) {
    for (const auto& [type, names] : step.host.restrictSet) {
        scribe.Write(Subject::EXEMPTION, Outcome::HAPPENED,
                     "restricted from now on, " + NameOfLimit(type) + ": " + (names.empty() ? "nobody" : Names(names)));
    }
}

void DrawCurves(Night& night, int64_t t, const Replay::SetStep& step, bool isStart) {
    const auto draw = [&](std::vector<Sample>& curve, const auto& fact) {
        if (fact) {
            curve.push_back({t, *fact});
        } else if (isStart) {
            curve.push_back({t, std::nullopt});
        }
    };
    draw(night.light, step.phone.light);
    draw(night.proximity, step.phone.proximity);
    std::optional<std::optional<float>> still;
    if (step.phone.movement) {
        const int32_t value = step.phone.movement->value;
        still = value == 1 ? std::optional(1.0F) : value == 2 ? std::optional(0.0F) : std::nullopt;
    }
    draw(night.stillness, still);
}

void ForgetCurves(Night& night, int64_t t) {
    constexpr size_t kFew = 64;
    constexpr int64_t kLookedAtMs = 5000;  // longer than a snapshot of the detector takes
    for (std::vector<Sample>* curve : {&night.light, &night.proximity, &night.stillness}) {
        if (curve->size() > kFew) {
            // the last one before holds when the look back begins
            const auto first = std::lower_bound(curve->begin(), curve->end() - 1, t - kLookedAtMs,
                                                [](const Sample& sample, int64_t time) { return sample.t < time; });
            curve->erase(curve->begin(), first == curve->begin() ? first : first - 1);
        }
    }
}

std::vector<HeadFact> TellHead(const Replay::Trace& trace) {
    std::vector<HeadFact> head = {{"strategies", StrategiesText(trace.host)}, {"host", HostText(trace.host)}};
    const auto add = [&head](const char* name, std::string text) {
        if (!text.empty()) {
            head.push_back({name, std::move(text)});
        }
    };
    add("policy", PolicyText(trace.host.policy));
    add("params", ParamsText(trace.host));
    add("phone", PhoneText(trace));
    add("around it", SurroundingsText(trace));
    add("running", RunningText(trace));
    add("exempt", ListsText(trace.device.host.allowList));
    add("restricted", ListsText(trace.device.host.restrictSet));
    std::string faults;
    for (const auto& [operation, code] : trace.device.phone.faults) {
        if (code) {
            Join(faults, operation + " (code " + std::to_string(*code) + ")");
        }
    }
    add("failing", faults);
    return head;
}

}  // namespace TARN::Story
