#include "translation.h"

#include <algorithm>
#include <array>
#include <utility>

#include "json_fields.h"

namespace TARN::Authoring {

namespace {

enum class Takes : uint8_t { NOTHING, NUMBER, TIME };

/// A word, and what it makes of the phone: a fact that is compared with what is known, and how it is written.
struct Word {
    std::string_view word;
    Takes takes;
    std::string_view fact;   ///< its name among what is known; empty: said again each time
    std::string_view value;  ///< what becomes known
    void (*write)(TraceWriter& writer, int64_t t);
};

template <const char* Name, const char* Value>
void WriteFact(TraceWriter& writer, int64_t t) {
    writer.Fact(t, Name, Value);
}
constexpr char kTrue[] = "true";
constexpr char kFalse[] = "false";
constexpr char kAirplane[] = "airplane";
constexpr char kWifi[] = "wifi";
constexpr char kBluetooth[] = "bluetooth";
constexpr char kWifiOn[] = R"({"enabled": true})";
constexpr char kWifiOff[] = R"({"enabled": false})";
constexpr char kBluetoothOn[] = R"({"state": 1})";
constexpr char kBluetoothOff[] = R"({"state": 3, "connection": 3})";
constexpr char kConnected[] = R"({"state": 1, "connection": 1})";
constexpr char kDisconnected[] = R"({"connection": 3})";

constexpr std::string_view kSaving = "COMMON_EVENT_POWER_SAVE_MODE_CHANGED";

constexpr std::array kWords = {
    Word{"screen on", Takes::NOTHING, "", "", [](TraceWriter& writer, int64_t t) { writer.Screen(t, true); }},
    Word{"screen off", Takes::NOTHING, "", "", [](TraceWriter& writer, int64_t t) { writer.Screen(t, false); }},
    Word{"unlock", Takes::NOTHING, "", "", [](TraceWriter& writer, int64_t t) { writer.Unlock(t); }},
    Word{"charger on", Takes::NOTHING, "charger", "on",
         [](TraceWriter& writer, int64_t t) { writer.Charger(t, true); }},
    Word{"charger off", Takes::NOTHING, "charger", "off",
         [](TraceWriter& writer, int64_t t) { writer.Charger(t, false); }},
    Word{"call start", Takes::NOTHING, "call", "on", [](TraceWriter& writer, int64_t t) { writer.Call(t, true); }},
    Word{"call end", Takes::NOTHING, "call", "off", [](TraceWriter& writer, int64_t t) { writer.Call(t, false); }},
    Word{"airplane on", Takes::NOTHING, "airplane", "on", WriteFact<kAirplane, kTrue>},
    Word{"airplane off", Takes::NOTHING, "airplane", "off", WriteFact<kAirplane, kFalse>},
    Word{"wifi on", Takes::NOTHING, "wifi", "on", WriteFact<kWifi, kWifiOn>},
    Word{"wifi off", Takes::NOTHING, "wifi", "off", WriteFact<kWifi, kWifiOff>},
    Word{"bluetooth on", Takes::NOTHING, "bluetooth", "on", WriteFact<kBluetooth, kBluetoothOn>},
    Word{"bluetooth off", Takes::NOTHING, "bluetooth", "off", WriteFact<kBluetooth, kBluetoothOff>},
    Word{"bluetooth connect", Takes::NOTHING, "bluetooth", "connected", WriteFact<kBluetooth, kConnected>},
    Word{"bluetooth disconnect", Takes::NOTHING, "bluetooth", "on", WriteFact<kBluetooth, kDisconnected>},
    Word{"audio start", Takes::NOTHING, "audio", "on",
         [](TraceWriter& writer, int64_t t) { writer.Task(t, Background::AUDIO, true); }},
    Word{"audio end", Takes::NOTHING, "audio", "off",
         [](TraceWriter& writer, int64_t t) { writer.Task(t, Background::AUDIO, false); }},
    Word{"location start", Takes::NOTHING, "location", "on",
         [](TraceWriter& writer, int64_t t) { writer.Task(t, Background::LOCATION, true); }},
    Word{"location end", Takes::NOTHING, "location", "off",
         [](TraceWriter& writer, int64_t t) { writer.Task(t, Background::LOCATION, false); }},
    Word{"saving on", Takes::NOTHING, "saving", "on",
         [](TraceWriter& writer, int64_t t) { writer.Broadcast(t, kSaving, R"({"current_power_mode": true})"); }},
    Word{"saving off", Takes::NOTHING, "saving", "off",
         [](TraceWriter& writer, int64_t t) { writer.Broadcast(t, kSaving, R"({"current_power_mode": false})"); }},
    Word{"move", Takes::NOTHING, "movement", "2", [](TraceWriter& writer, int64_t t) { writer.Movement(t, true); }},
    Word{"still", Takes::NOTHING, "movement", "1", [](TraceWriter& writer, int64_t t) { writer.Movement(t, false); }},
    Word{"light", Takes::NUMBER, "light", "", nullptr},
    Word{"proximity", Takes::NUMBER, "proximity", "", nullptr},
    Word{"alarm", Takes::TIME, "alarm", "", nullptr},
    Word{"restart", Takes::NOTHING, "", "", [](TraceWriter& writer, int64_t t) { writer.Restart(t); }},
    Word{"ignore", Takes::NOTHING, "", "", nullptr},
};

const Word& WordOf(const Saying& saying) {
    return *std::find_if(kWords.begin(), kWords.end(), [&](const Word& one) { return one.word == saying.word; });
}

}  // namespace

Translation::Translation(const Source& source, std::ostream& output, ReadTime readTime)
    : source_(source),
      clock_(Replay::TimeZone(source.timezone)),
      writer_(output, clock_, TimeStyle::FULL),
      readTime_(std::move(readTime)),
      known_({{"charger", "off"},
              {"call", "off"},
              {"airplane", "off"},
              {"wifi", "on"},
              {"bluetooth", "on"},
              {"audio", "off"},
              {"location", "off"},
              {"saving", "off"}}) {}

std::optional<Saying> Translation::Read(std::string_view text) {
    for (const Word& one : kWords) {
        const bool isWhole = text.size() == one.word.size();
        const bool hasValue = one.takes != Takes::NOTHING && text.size() > one.word.size() + 1;
        if (text.starts_with(one.word) && (isWhole || (hasValue && text[one.word.size()] == ' '))) {
            return Saying{one.word, isWhole ? "" : std::string(text.substr(one.word.size() + 1))};
        }
    }
    return std::nullopt;
}

bool Translation::NeedsValue(const Saying& saying) {
    return WordOf(saying).takes != Takes::NOTHING && saying.value.empty();
}

std::string Translation::Words() {
    std::string words;
    for (const Word& one : kWords) {
        words.append(words.empty() ? "" : ", ").append(one.word);
    }
    return words;
}

void Translation::Begin(int64_t t) {
    if (std::exchange(hasBegun_, true)) {
        return;
    }
    const std::string file = source_.name.substr(source_.name.rfind('/') + 1);
    writer_.Comment("What " + file + " says, as a trace. What was lost stands at its end.");
    Json device = Json::object();
    if (!source_.isBare) {
        device = OrdinaryDevice();
        device.erase("light");
        device.erase("proximity");
        writer_.Comment("Configuration and applications are those of an ordinary phone.");
    }
    writer_.Header(t, std::nullopt, source_.isBare ? Json::object() : OrdinaryHost(), device);
    last_ = t;
}

bool Translation::IsNews(std::string_view fact, std::string_view value) {
    const auto known = known_.find(fact);
    if (known == known_.end()) {
        known_.emplace(fact, value);
        return true;
    }
    return std::exchange(known->second, std::string(value)) != value;
}

void Translation::Count(int64_t t) {
    ++steps_;
    last_ = t;
}

bool Translation::SayNumber(int64_t t, const Saying& saying) {
    const Json number = Json::parse(saying.value, nullptr, /*allow_exceptions=*/false);
    if (!number.is_number() || number < -1e9 || number > 1e9) {
        return false;
    }
    if (IsNews(saying.word, saying.value)) {
        writer_.Fact(t, saying.word, number.dump());
        Count(t);
    }
    return true;
}

bool Translation::SayAlarm(int64_t t, const std::string& value) {
    const auto rings = value == "none" ? std::nullopt : readTime_(value);
    if (value != "none" && !rings) {
        return false;
    }
    if (IsNews("alarm", rings ? std::to_string(*rings) : "none")) {
        writer_.Alarm(t, rings);
        Count(t);
    }
    return true;
}

bool Translation::Say(int64_t t, const Saying& saying) {
    Begin(t);
    const Word& word = WordOf(saying);
    if (word.takes == Takes::NUMBER) {
        return SayNumber(t, saying);
    }
    if (word.takes == Takes::TIME) {
        return SayAlarm(t, saying.value);
    }
    if (word.write != nullptr && (word.fact.empty() || IsNews(word.fact, word.value))) {
        word.write(writer_, t);
        Count(t);
    }
    return true;
}

void Translation::Step(int64_t t, std::string_view kind, std::string_view content) {
    Begin(t);
    writer_.Step(t, kind, content);
    Count(t);
}

void Translation::End(int64_t t, Imported& imported) {
    constexpr size_t kMostTold = 200;
    imported.steps = steps_;
    if (steps_ == 0) {
        DevStandbyMgr::Refuse(source_.name,
                              "nothing in it could be translated: " +
                                  (imported.losses.IsEmpty() ? "it says nothing" : imported.losses.Tell(3)),
                              "what docs/import.md tells");
    }
    if (t > last_) {
        writer_.Comment("the log ends");
        writer_.Step(t, "set", "{}");
    }
    writer_.Finish();
    writer_.Comment(std::to_string(imported.read) + " read, " + std::to_string(steps_) + " steps written");
    if (!imported.losses.IsEmpty()) {
        writer_.Comment("not translated: " + imported.losses.Tell(kMostTold));
    }
}

}  // namespace TARN::Authoring
