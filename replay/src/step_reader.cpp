#include "step_reader.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "common_event_support.h"
#include "facts_reader.h"
#include "json_fields.h"
#include "time_reader.h"

namespace TARN::Replay {

namespace {

using namespace DevStandbyMgr;
using EventFwk::CommonEventSupport;
using Json = nlohmann::json;  // to write steps in full
using What = decltype(Step::what);

AAFwk::Want ReadWant(const JsonValue& object, const std::string& where) {
    ExpectObject(object, where);
    AAFwk::Want want;
    for (const auto& [name, value] : object.Members()) {
        const std::string key(name);
        if (value.IsBool()) {
            want.SetParam(key, value.Bool());
        } else if (value.IsInteger()) {
            want.SetParam(key, value.Integer());
        } else if (value.IsFloat()) {
            want.SetParam(key, value.Float());
        } else if (value.IsString()) {
            want.SetParam(key, std::string(value.String()));
        } else {
            Refuse(where + "." + key, Quote(value), "a bool, a number or a string");
        }
    }
    return want;
}

What ReadMessage(const JsonValue& object, const std::string& name) {
    JsonFields fields(object, name);
    StandbyMessage message(ReadInt32(fields.Require("eventId", "an event identifier"), fields.Where("eventId")));
    fields.Optional(
        "action", [&](const JsonValue& value, const std::string& where) { message.action = ReadString(value, where); });
    fields.Optional("want", [&](const JsonValue& value, const std::string& where) {
        if (!value.IsNull()) {
            message.want = ReadWant(value, where);
        }
    });
    fields.Finish();
    return MessageStep{std::move(message)};
}

What ReadBroadcast(const JsonValue& object, const std::string& name) {
    JsonFields fields(object, name);
    AAFwk::Want want;
    fields.Optional("want", [&](const JsonValue& value, const std::string& where) { want = ReadWant(value, where); });
    want.SetAction(ReadString(fields.Require("action", "the broadcast's name"), fields.Where("action")));
    fields.Finish();
    return BroadcastStep{std::move(want)};
}

What ReadRestart(const JsonValue& value, const std::string& where) {
    const std::string kind = ReadString(value, where);
    if (kind != "stop" && kind != "crash") {
        Refuse(where, Quote(value), "\"stop\" or \"crash\"");
    }
    return RestartStep{kind == "crash"};
}

What ReadFile(const JsonValue& object, const std::string& name) {
    JsonFields fields(object, name);
    FileStep step;
    step.name = ReadString(fields.Require("name", "a file name"), fields.Where("name"));
    if (step.name != "power_off_record" && step.name != "sleep_shared_pref.xml") {
        Refuse(fields.Where("name"), Quote(step.name), "\"power_off_record\" or \"sleep_shared_pref.xml\"");
    }
    const JsonValue& text = fields.Require("text", "the file's text, or null to remove it");
    if (!text.IsNull()) {
        step.text = ReadString(text, fields.Where("text"));
    }
    fields.Finish();
    return step;
}

What ReadDump(const JsonValue& value, const std::string& where) {
    return DumpStep{ReadStrings(value, where)};
}

/// The place of a word among those that may stand there.
template <size_t N>
size_t ReadChoice(const JsonValue& value, const std::string& where, const std::array<std::string_view, N>& words) {
    const std::string word = ReadString(value, where);
    const auto found = std::find(words.begin(), words.end(), word);
    if (found == words.end()) {
        Refuse(where, Quote(value), "\"" + std::string(words.front()) + "\" or \"" + std::string(words.back()) + "\"");
    }
    return static_cast<size_t>(found - words.begin());
}

BroadcastStep Broadcast(std::string_view action) {
    AAFwk::Want want;
    want.SetAction(std::string(action));
    return {std::move(want)};
}

// What always goes together: the steps that one word stands for.
using Full = std::vector<What>;

Full Charger(const JsonValue& value, const std::string& where, const Simulated::PhoneFacts& /*facts*/) {
    const bool isPlugged = ReadChoice<2>(value, where, {"plugged", "unplugged"}) == 0;
    SetStep set;
    set.phone.plugged = isPlugged ? 1 : 0;
    return {std::move(set), Broadcast(isPlugged ? CommonEventSupport::COMMON_EVENT_CHARGING
                                                : CommonEventSupport::COMMON_EVENT_DISCHARGING)};
}

Full Screen(const JsonValue& value, const std::string& where, const Simulated::PhoneFacts& /*facts*/) {
    const bool isOn = ReadChoice<2>(value, where, {"on", "off"}) == 0;
    return {Broadcast(isOn ? CommonEventSupport::COMMON_EVENT_SCREEN_ON : CommonEventSupport::COMMON_EVENT_SCREEN_OFF)};
}

Full Unlock(const JsonValue& value, const std::string& where, const Simulated::PhoneFacts& /*facts*/) {
    if (!value.IsBool() || !value.Bool()) {
        Refuse(where, Quote(value), "true");
    }
    return {Broadcast(CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED)};
}

constexpr int32_t kCallState = 1;

/// A call runs as a task of whom the user looks at, or of the first application.
Full Call(const JsonValue& value, const std::string& where, const Simulated::PhoneFacts& facts) {
    constexpr uint32_t kCallTask = 8;
    const bool starts = ReadChoice<2>(value, where, {"start", "end"}) == 0;
    std::vector<Simulated::ContinuousTask> tasks;
    std::copy_if(facts.continuousTasks.begin(), facts.continuousTasks.end(), std::back_inserter(tasks),
                 [](const Simulated::ContinuousTask& task) { return task.type != kCallTask; });
    const auto find = [&facts](const auto& fits) {
        return std::find_if(facts.processes.begin(), facts.processes.end(), fits);
    };
    auto caller = find([](const auto& process) { return process.foreground; });
    if (caller == facts.processes.end()) {
        caller = find([](const auto& process) { return !process.native; });
    }
    if (starts && caller != facts.processes.end()) {
        tasks.push_back({kCallTask, caller->uid, caller->pid});
    }
    SetStep set;
    set.host.deviceState = {{kCallState, starts}};
    set.phone.continuousTasks = std::move(tasks);
    Full full;
    full.emplace_back(std::move(set));
    return full;
}

/// A step that one of the words above stands for, as a line would say it.
Json Said(const Step& step) {
    Json object = {{"t", step.t}};
    if (const auto* broadcast = std::get_if<BroadcastStep>(&step.what)) {
        object["broadcast"] = {{"action", broadcast->want.GetAction()}};
        return object;
    }
    const auto& set = std::get<SetStep>(step.what);
    if (set.phone.plugged) {
        object["set"] = {{"plugged", *set.phone.plugged}};
        return object;
    }
    Json tasks = Json::array();
    for (const Simulated::ContinuousTask& task : *set.phone.continuousTasks) {
        tasks.push_back({{"type", task.type}, {"uid", task.uid}, {"pid", task.pid}});
    }
    object["set"] = {{"device_state", {{std::to_string(kCallState), set.host.deviceState.at(kCallState)}}},
                     {"continuous_tasks", tasks}};
    return object;
}

/// A kind of step that says one thing.
struct PlainKind {
    const char* name;
    What (*read)(const JsonValue& value, const std::string& where);
};
constexpr std::array kPlainKinds = {PlainKind{"message", ReadMessage}, PlainKind{"broadcast", ReadBroadcast},
                                    PlainKind{"dump", ReadDump}, PlainKind{"restart", ReadRestart},
                                    PlainKind{"file", ReadFile}};

/// A kind of step that stands for others.
struct ShortKind {
    const char* name;
    Full (*inFull)(const JsonValue& value, const std::string& where, const Simulated::PhoneFacts& facts);
};
constexpr std::array kShortKinds = {ShortKind{"charger", Charger}, ShortKind{"screen", Screen},
                                    ShortKind{"unlock", Unlock}, ShortKind{"call", Call}};

}  // namespace

void ReadSteps(const JsonValue& object, const StepContext& context, std::vector<Step>& steps) {
    JsonFields fields(object, {});
    const JsonValue& time = fields.Require("t", "the step's time");
    const int64_t t = ReadTimeOn(time, "t", context.start, context.from);
    const bool isTimeOfDay = IsTimeOfDay(time);
    int count = 0;
    const auto add = [&](auto&& what) {
        Step& step = steps.emplace_back();
        step.t = t;
        step.what = std::forward<decltype(what)>(what);
        step.isTimeOfDay = isTimeOfDay;
    };
    fields.Optional("set", [&](const JsonValue& value, const std::string& where) {
        ++count;
        add(ReadFacts(value, where, {context.mode == HostMode::AUTOMATIC, t, context.facts.accounts}));
    });
    for (const PlainKind& kind : kPlainKinds) {
        fields.Optional(kind.name, [&](const JsonValue& value, const std::string& where) {
            ++count;
            add(kind.read(value, where));
        });
    }
    for (const ShortKind& kind : kShortKinds) {
        fields.Optional(kind.name, [&](const JsonValue& value, const std::string& where) {
            ++count;
            for (What& what : kind.inFull(value, where, context.facts)) {
                add(std::move(what));
            }
        });
    }
    fields.Finish();
    if (count != 1) {
        Refuse("", std::to_string(count) + " kinds of step",
               "exactly one of set, message, broadcast, charger, screen, unlock, call, dump, restart, file");
    }
}

std::vector<std::string> LinesInFull(const std::string& line, const JsonValue& object, std::span<const Step> steps) {
    const auto members = object.Members();
    const bool isShort = std::any_of(kShortKinds.begin(), kShortKinds.end(), [&](const ShortKind& kind) {
        return std::any_of(members.begin(), members.end(),
                           [&](const auto& member) { return member.name == kind.name; });
    });
    std::vector<std::string> lines;
    if (isShort) {
        std::transform(steps.begin(), steps.end(), std::back_inserter(lines),
                       [](const Step& step) { return Said(step).dump(); });
        return lines;
    }
    Json full = ToJson(object);
    const bool isAbsolute = std::any_of(members.begin(), members.end(), [](const auto& member) {
        return member.name == "t" && IsAbsolute(member.value);
    });
    full["t"] = steps.front().t;
    lines.push_back(isAbsolute ? line : full.dump());
    return lines;
}

}  // namespace TARN::Replay
