#include "step_reader.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "common_event_support.h"
#include "facts_reader.h"
#include "json_fields.h"
#include "time_reader.h"

namespace TARN::Replay {

namespace {

using namespace DevStandbyMgr;
using EventFwk::CommonEventSupport;
using Json = nlohmann::json;
using What = decltype(Step::what);

AAFwk::Want ReadWant(const Json& object, const std::string& where) {
    ExpectObject(object, where);
    AAFwk::Want want;
    for (const auto& [key, value] : object.items()) {
        const std::string member = where + "." + key;
        switch (value.type()) {
            case Json::value_t::boolean:
                want.SetParam(key, value.get<bool>());
                break;
            case Json::value_t::number_integer:
            case Json::value_t::number_unsigned:
                want.SetParam(key, ReadInteger(value, member));
                break;
            case Json::value_t::number_float:
                want.SetParam(key, value.get<double>());
                break;
            case Json::value_t::string:
                want.SetParam(key, value.get<std::string>());
                break;
            default:
                Refuse(member, Quote(value), "a bool, a number or a string");
        }
    }
    return want;
}

What ReadMessage(const Json& object, const std::string& name) {
    JsonFields fields(object, name);
    StandbyMessage message(ReadInt32(fields.Require("eventId", "an event identifier"), fields.Where("eventId")));
    fields.Optional("action",
                    [&](const Json& value, const std::string& where) { message.action = ReadString(value, where); });
    fields.Optional("want", [&](const Json& value, const std::string& where) {
        if (!value.is_null()) {
            message.want = ReadWant(value, where);
        }
    });
    fields.Finish();
    return MessageStep{std::move(message)};
}

What ReadBroadcast(const Json& object, const std::string& name) {
    JsonFields fields(object, name);
    AAFwk::Want want;
    fields.Optional("want", [&](const Json& value, const std::string& where) { want = ReadWant(value, where); });
    want.SetAction(ReadString(fields.Require("action", "the broadcast's name"), fields.Where("action")));
    fields.Finish();
    return BroadcastStep{std::move(want)};
}

What ReadRestart(const Json& value, const std::string& where) {
    const std::string kind = ReadString(value, where);
    if (kind != "stop" && kind != "crash") {
        Refuse(where, Quote(value), "\"stop\" or \"crash\"");
    }
    return RestartStep{kind == "crash"};
}

What ReadFile(const Json& object, const std::string& name) {
    JsonFields fields(object, name);
    FileStep step;
    step.name = ReadString(fields.Require("name", "a file name"), fields.Where("name"));
    if (step.name != "power_off_record" && step.name != "sleep_shared_pref.xml") {
        Refuse(fields.Where("name"), Quote(step.name), "\"power_off_record\" or \"sleep_shared_pref.xml\"");
    }
    const Json& text = fields.Require("text", "the file's text, or null to remove it");
    if (!text.is_null()) {
        step.text = ReadString(text, fields.Where("text"));
    }
    fields.Finish();
    return step;
}

What ReadDump(const Json& value, const std::string& where) {
    return DumpStep{ReadStrings(value, where)};
}

/// The place of a word among those that may stand there.
template <size_t N>
size_t ReadChoice(const Json& value, const std::string& where, const std::array<std::string_view, N>& words) {
    const std::string word = ReadString(value, where);
    const auto found = std::find(words.begin(), words.end(), word);
    if (found == words.end()) {
        Refuse(where, Quote(value), "\"" + std::string(words.front()) + "\" or \"" + std::string(words.back()) + "\"");
    }
    return static_cast<size_t>(found - words.begin());
}

Json Set(const Json& facts) {
    return {{"set", facts}};
}

Json Broadcast(std::string_view action) {
    return {{"broadcast", {{"action", action}}}};
}

// What always goes together, in full: objects with one kind of step each.
using Full = std::vector<Json>;

Full Charger(const Json& value, const std::string& where, const Simulated::PhoneFacts& /*facts*/) {
    const bool isPlugged = ReadChoice<2>(value, where, {"plugged", "unplugged"}) == 0;
    return {Set({{"plugged", isPlugged ? 1 : 0}}), Broadcast(isPlugged ? CommonEventSupport::COMMON_EVENT_CHARGING
                                                                       : CommonEventSupport::COMMON_EVENT_DISCHARGING)};
}

Full Screen(const Json& value, const std::string& where, const Simulated::PhoneFacts& /*facts*/) {
    const bool isOn = ReadChoice<2>(value, where, {"on", "off"}) == 0;
    return {Broadcast(isOn ? CommonEventSupport::COMMON_EVENT_SCREEN_ON : CommonEventSupport::COMMON_EVENT_SCREEN_OFF)};
}

Full Unlock(const Json& value, const std::string& where, const Simulated::PhoneFacts& /*facts*/) {
    if (value != true) {
        Refuse(where, Quote(value), "true");
    }
    return {Broadcast(CommonEventSupport::COMMON_EVENT_SCREEN_UNLOCKED)};
}

/// A call runs as a task of whom the user looks at, or of the first application.
Full Call(const Json& value, const std::string& where, const Simulated::PhoneFacts& facts) {
    constexpr uint32_t kCallTask = 8;
    const bool starts = ReadChoice<2>(value, where, {"start", "end"}) == 0;
    Json tasks = Json::array();
    for (const Simulated::ContinuousTask& task : facts.continuousTasks) {
        if (task.type != kCallTask) {
            tasks.push_back({{"type", task.type}, {"uid", task.uid}, {"pid", task.pid}});
        }
    }
    const auto find = [&facts](const auto& fits) {
        return std::find_if(facts.processes.begin(), facts.processes.end(), fits);
    };
    auto caller = find([](const auto& process) { return process.foreground; });
    if (caller == facts.processes.end()) {
        caller = find([](const auto& process) { return !process.native; });
    }
    if (starts && caller != facts.processes.end()) {
        tasks.push_back({{"type", kCallTask}, {"uid", caller->uid}, {"pid", caller->pid}});
    }
    return {Set({{"device_state", {{"1", starts}}}, {"continuous_tasks", tasks}})};
}

/// A kind of step that says one thing.
struct PlainKind {
    const char* name;
    What (*read)(const Json& value, const std::string& where);
};
constexpr std::array kPlainKinds = {PlainKind{"message", ReadMessage}, PlainKind{"broadcast", ReadBroadcast},
                                    PlainKind{"dump", ReadDump}, PlainKind{"restart", ReadRestart},
                                    PlainKind{"file", ReadFile}};

/// A kind of step that stands for others.
struct ShortKind {
    const char* name;
    Full (*inFull)(const Json& value, const std::string& where, const Simulated::PhoneFacts& facts);
};
constexpr std::array kShortKinds = {ShortKind{"charger", Charger}, ShortKind{"screen", Screen},
                                    ShortKind{"unlock", Unlock}, ShortKind{"call", Call}};

}  // namespace

std::vector<WrittenStep> ReadSteps(const Json& object, const std::string* line, const StepContext& context) {
    JsonFields fields(object, {});
    const Json& time = fields.Require("t", "the step's time");
    const int64_t t = ReadTimeOn(time, "t", context.start, context.from);
    std::vector<WrittenStep> steps;
    int count = 0;
    const auto add = [&](What what) {
        steps.push_back({{t, std::move(what)}, line != nullptr ? *line : std::string()});
    };
    fields.Optional("set", [&](const Json& value, const std::string& where) {
        ++count;
        add(ReadFacts(value, where, {context.mode == HostMode::AUTOMATIC, t, context.facts.accounts}));
    });
    for (const PlainKind& kind : kPlainKinds) {
        fields.Optional(kind.name, [&](const Json& value, const std::string& where) {
            ++count;
            add(kind.read(value, where));
        });
    }
    for (const ShortKind& kind : kShortKinds) {
        fields.Optional(kind.name, [&](const Json& value, const std::string& where) {
            ++count;
            for (Json& one : kind.inFull(value, where, context.facts)) {
                one["t"] = t;
                const std::string full = line != nullptr ? one.dump() : std::string();
                auto read = ReadSteps(one, line != nullptr ? &full : nullptr, context);
                std::move(read.begin(), read.end(), std::back_inserter(steps));
            }
        });
    }
    for (WrittenStep& written : steps) {
        written.step.isTimeOfDay = IsTimeOfDay(time);
    }
    fields.Finish();
    if (count != 1) {
        Refuse("", std::to_string(count) + " kinds of step",
               "exactly one of set, message, broadcast, charger, screen, unlock, call, dump, restart, file");
    }
    if (line != nullptr && steps.size() == 1 && !IsAbsolute(time)) {
        Json full = object;
        full["t"] = t;
        steps.front().line = full.dump();
    }
    return steps;
}

}  // namespace TARN::Replay
