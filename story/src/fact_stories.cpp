#include "fact_stories.h"

#include <array>
#include <cstdlib>

#include "time_zone.h"

namespace TARN::Story {

namespace {

using Value = std::optional<std::string>;

void TellAlarm(Teller& teller, const Value& value, bool /*isStart*/) {
    const int64_t alarm = value ? std::strtoll(value->c_str(), nullptr, 10) : 0;
    teller.TellNew(Subject::ALARM,
                   alarm > 0 ? "next alarm " + Replay::TimeZone::Format(alarm, "%a %H:%M") : "no alarm is set");
}

void TellAirplaneMode(Teller& teller, const Value& value, bool isStart) {
    if (isStart && value != "1") {
        return;
    }
    teller.TellNew(Subject::DEVICE, value == "1" ? "airplane mode on" : "airplane mode off");
}

struct SettingStory {
    std::string_view keyword;
    void (*tell)(Teller& teller, const Value& value, bool isStart);
};

constexpr std::array kSettings = {
    SettingStory{"nearestAlarmingTime", TellAlarm},
    SettingStory{"settings.telephony.airplanemode", TellAirplaneMode},
};

}  // namespace

void TellFacts(Teller& teller, const Replay::SetStep& step, bool isStart) {
    const Simulated::FactsChange& change = step.phone;
    for (const auto& [operation, code] : change.faults) {
        teller.Tell(Subject::FAULT, code ? operation + " fails from now on (code " + std::to_string(*code) + ")"
                                         : operation + " works again");
    }
    if (change.deviceMode) {
        teller.TellNew(Subject::POWER, "device mode " + std::to_string(*change.deviceMode));
    }
    const auto table = change.settings.find("SETTINGSDATA");
    if (table == change.settings.end() || !table->second) {
        return;
    }
    for (const SettingStory& story : kSettings) {
        if (const auto row = table->second->find(std::string(story.keyword)); row != table->second->end()) {
            story.tell(teller, row->second, isStart);
        }
    }
}

}  // namespace TARN::Story
