// What people, and the world around the phone, do to it.
#include <algorithm>
#include <array>

#include <nlohmann/json.hpp>

#include "commands.h"
#include "common_event_support.h"
#include "json_fields.h"
#include "moment.h"
#include "phrases.h"
#include "simulated_phone.h"
#include "standby_constants.h"
#include "standby_service_impl.h"

namespace TARN::Shell {

namespace {

using DevStandbyMgr::Quote;
using EventFwk::CommonEventSupport;
using Json = nlohmann::json;

constexpr int32_t kNormalMode = 600;

HandStep Set(const Json& facts) {
    return {"set", facts.dump()};
}

HandStep Broadcast(std::string_view action, const Json& want = Json::object()) {
    return {"broadcast", Json{{"action", action}, {"want", want}}.dump()};
}

bool IsOn(Arguments& words) {
    const bool isOn = words.Choice({"on", "off"}) == 0;
    words.End();
    return isOn;
}

/// A word that a trace has as a step: what goes together with it is done too.
HandStep Short(const char* kind, const Json& value) {
    return {kind, value.dump()};
}

void Screen(Bench& bench, Arguments& words) {
    bench.phone.Do({Short("screen", IsOn(words) ? "on" : "off")});
}

void Unlock(Bench& bench, Arguments& words) {
    words.End();
    bench.phone.Do({Short("unlock", true)});
}

void Charger(Bench& bench, Arguments& words) {
    bench.phone.Do({Short("charger", IsOn(words) ? "plugged" : "unplugged")});
}

/// A sensor's reading, or none.
template <const char* Fact>
void Reading(Bench& bench, Arguments& words) {
    const std::string word = words.Word();
    words.End();
    const Json value = word == "none" ? Json() : Json::parse(word, nullptr, /*allow_exceptions=*/false);
    if (!value.is_null() && !value.is_number()) {
        words.Misused(Quote(word));
    }
    bench.phone.Do({Set({{Fact, value}})});
}
constexpr char kLight[] = "light";
constexpr char kProximity[] = "proximity";

void Still(Bench& bench, Arguments& words) {
    const auto word = words.MaybeWord();
    words.End();
    const auto stretch = word ? Replay::ReadStretch(*word) : 0;
    if (!stretch) {
        words.Misused(Quote(*word));
    }
    bench.phone.Do({Set({{"movement", {{"value", 1}, {"at", bench.phone.NextMs() - *stretch}}}})});
}

void Move(Bench& bench, Arguments& words) {
    words.End();
    bench.phone.Do({Set({{"movement", {{"value", 2}, {"at", bench.phone.NextMs()}}}})});
}

void Alarm(Bench& bench, Arguments& words) {
    const std::string word = words.Rest();
    Json alarm;
    if (word != "none") {
        const auto t = Replay::ReadMoment(word, bench.phone.NextMs());
        if (!t) {
            words.Misused(word.empty() ? "something is missing" : Quote(word));
        }
        alarm = *t;
    }
    bench.phone.Do({Set({{"alarm", alarm}})});
}

void Call(Bench& bench, Arguments& words) {
    const bool starts = words.Choice({"start", "end"}) == 0;
    words.End();
    bench.phone.Do({Short("call", starts ? "start" : "end")});
}

void Bluetooth(Bench& bench, Arguments& words) {
    constexpr int32_t kOn = 1;
    constexpr int32_t kOff = 3;
    constexpr int32_t kConnected = 1;
    constexpr int32_t kDisconnected = 3;
    const size_t choice = words.Choice({"on", "off", "connect", "disconnect"});
    words.End();
    Json facts;
    if (choice != 3) {
        facts["state"] = choice == 1 ? kOff : kOn;
    }
    if (choice != 0) {
        facts["connection"] = choice == 2 ? kConnected : kDisconnected;
    }
    bench.phone.Do({Set({{"bluetooth", facts}})});
}

void Wifi(Bench& bench, Arguments& words) {
    bench.phone.Do({Set({{"wifi", {{"enabled", IsOn(words)}}}})});
}

void Mode(Bench& bench, Arguments& words) {
    const Json mode = Json::parse(words.Integer());
    words.End();
    bench.phone.Do({Set({{"device_mode", mode}}), Broadcast(CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED,
                                                            {{"current_power_mode", mode != kNormalMode}})});
}

void SetFacts(Bench& bench, Arguments& words) {
    bench.phone.Do({{"set", words.Json("{}")}});
}

void SendBroadcast(Bench& bench, Arguments& words) {
    const std::string action = words.Word();
    bench.phone.Do({{"broadcast", R"({"action": )" + Json(action).dump() + R"(, "want": )" + words.Json("{}") + "}"}});
}

void SendMessage(Bench& bench, Arguments& words) {
    const std::string id = words.Integer();
    bench.phone.Do({{"message", R"({"eventId": )" + id + R"(, "want": )" + words.Json("null") + "}"}});
}

void Fail(Bench& bench, Arguments& words) {
    const std::string operation = words.Word();
    const std::string code = words.Word();
    words.End();
    const Json value = code == "off" ? Json() : Json::parse(code, nullptr, /*allow_exceptions=*/false);
    if (!value.is_null() && !value.is_number_integer()) {
        words.Misused(Quote(code));
    }
    bench.phone.Do({Set({{"fail", {{operation, value}}}})});
}

struct Limit {
    const char* word;
    int32_t allowType;
};
constexpr std::array kLimits = {Limit{"network", DevStandbyMgr::AllowType::NETWORK},
                                Limit{"locks", DevStandbyMgr::AllowType::RUNNING_LOCK},
                                Limit{"freeze", DevStandbyMgr::AllowType::FREEZE}};

std::vector<std::string> ExemptFrom(Bench& bench, const Limit& limit) {
    std::vector<DevStandbyMgr::AllowInfo> infos;
    if (bench.phone.Service().GetAllowList(limit.allowType, infos, 0) != 0) {
        DevStandbyMgr::Refuse("", "the allow list cannot be read, StandbyServiceImpl.GetAllowList fails",
                              "fail StandbyServiceImpl.GetAllowList off");
    }
    std::vector<std::string> names;
    for (const auto& info : infos) {
        names.push_back(info.GetName());
    }
    return names;
}

HandStep ExemptExactly(const Limit& limit, const std::vector<std::string>& names) {
    return Set({{"allow_list", {{std::to_string(limit.allowType), names}}}});
}

void Exempt(Bench& bench, Arguments& words) {
    const auto name = words.MaybeWord();
    if (!name) {
        for (const Limit& limit : kLimits) {
            bench.output << limit.word << ':';
            for (const std::string& exempt : ExemptFrom(bench, limit)) {
                bench.output << ' ' << Story::Tame(exempt);
            }
            bench.output << '\n';
        }
        return;
    }
    const Limit& limit = kLimits.at(words.Choice({kLimits[0].word, kLimits[1].word, kLimits[2].word}));
    words.End();
    auto names = ExemptFrom(bench, limit);
    if (std::find(names.begin(), names.end(), *name) != names.end()) {
        bench.output << Story::Tame(*name) << " is exempt already\n";
        return;
    }
    names.push_back(*name);
    bench.phone.Do({ExemptExactly(limit, names)});
}

void Unexempt(Bench& bench, Arguments& words) {
    const std::string name = words.Word();
    const auto only = words.MaybeWord();
    words.End();
    if (only && std::none_of(kLimits.begin(), kLimits.end(), [&](const Limit& limit) { return *only == limit.word; })) {
        words.Misused(Quote(*only));
    }
    std::vector<HandStep> steps;
    for (const Limit& limit : kLimits) {
        auto names = ExemptFrom(bench, limit);
        if ((!only || *only == limit.word) && std::erase(names, name) > 0) {
            steps.push_back(ExemptExactly(limit, names));
        }
    }
    if (steps.empty()) {
        bench.output << Story::Tame(name) << " is not exempt\n";
        return;
    }
    bench.phone.Do(steps);
}

void Restart(Bench& bench, Arguments& words) {
    const auto kind = words.MaybeWord();
    words.End();
    if (kind && *kind != "crash") {
        words.Misused(Quote(*kind));
    }
    bench.phone.Do({{"restart", kind ? R"("crash")" : R"("stop")"}});
}

constexpr std::array kCommands = {
    Command{"screen", "on|off", "The screen goes on or off", "", Screen},
    Command{"unlock", "", "The user unlocks the phone", "", Unlock},
    Command{"charger", "on|off", "The charger is plugged in or out", "", Charger},
    Command{"light", "LUX|none", "The light around the phone; none: the sensor reports nothing", "", Reading<kLight>},
    Command{"proximity", "DISTANCE|none", "What the proximity sensor measures", "", Reading<kProximity>},
    Command{"still", "[20m]", "The phone lies still, since a while ago or from now on", "", Still},
    Command{"move", "", "The phone is moved", "", Move},
    Command{"alarm", "06:30|none", "The next alarm", "", Alarm},
    Command{"call", "start|end", "A call, as a task of the application that is looked at", "", Call},
    Command{"bluetooth", "on|off|connect|disconnect", "Bluetooth, and a headset on it", "", Bluetooth},
    Command{"wifi", "on|off", "The user switches Wi-Fi", "", Wifi},
    Command{"mode", "MODE", "The power mode: 600 normal, 603 full power save", "", Mode},
    Command{"set", "{FACTS}", "Facts as a trace's step \"set\" has them",
            "set {\"light\": 3.0, \"bluetooth\": {\"connection\": 1}}", SetFacts},
    Command{"broadcast", "ACTION [{WANT}]", "Somebody sends a broadcast", "", SendBroadcast},
    Command{"message", "ID [{WANT}]", "The host dispatches a message",
            "message 3 {\"CURRENT_STATE\": 4, \"CURRENT_PHASE\": 1}", SendMessage},
    Command{"exempt", "[NAME network|locks|freeze]", "A process or bundle is put on an allow list; alone: who is", "",
            Exempt},
    Command{"unexempt", "NAME [network|locks|freeze]", "It is taken off that one, or off all", "", Unexempt},
    Command{"fail", "OPERATION CODE|off", "An operation of the phone fails from now on",
            "fail BluetoothHost.DisableBt 7", Fail},
    Command{"restart", "[crash]", "The service stops, or crashes, and starts again", "", Restart},
};

}  // namespace

std::span<const Command> PhoneCommands() {
    return kCommands;
}

}  // namespace TARN::Shell
