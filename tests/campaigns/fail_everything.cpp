#include <algorithm>
#include <array>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "campaigns.h"
#include "operations.h"
#include "player.h"
#include "time_zone.h"
#include "want_json.h"

namespace TARN::Tests {

namespace {

using Replay::TimeZone;

enum Figure : uint8_t { FELT };

constexpr std::array kCodes = {-1, 1, 3, 2'147'483'647};

/// Since when it fails: since the service runs, or since before it began; then it is started anew at the end of that
/// day, and again when all is well.
enum Since : uint8_t { UNDER_WAY, BEFORE, SINCE_COUNT };

/// What a failure leaves behind when all is well again, and is meant to: the phone needs a hand before the night after.
struct Lasting {
    std::string_view operation;
    bool isRadioOff;  ///< the user has to switch the radios on
    bool isInMemory;  ///< the service has to start anew
};
constexpr std::array kLasting = {
    // switching on is tried once, and counts as done
    Lasting{"BluetoothHost.EnableBle", true, false},
    // nothing is restored from a record that could not be written
    Lasting{"JsonUtils.DumpJsonValueToFile", true, true},
    // the power-off of the sleeping user thinks that Bluetooth is off, if not it but the other power-off brought it
    // back
    Lasting{"TimeProvider.GetCondition", false, true},
    // who waits for an hour of the wrong clock goes on waiting; nobody says that the clock was set
    Lasting{"TimeServiceClient.GetWallTimeMs", false, true},
};

/// Operations with the code with which each fails.
using Faults = std::map<std::string, int32_t>;

struct Case {
    Faults faults;
    Since since = UNDER_WAY;

    [[nodiscard]] bool Lasts(bool Lasting::*kind) const {
        return std::any_of(kLasting.begin(), kLasting.end(), [this, kind](const Lasting& lasting) {
            return lasting.*kind && faults.contains(std::string(lasting.operation));
        });
    }

    /// Whether the service starts anew when all is well again.
    [[nodiscard]] bool StartsAnew() const { return since == BEFORE || Lasts(&Lasting::isInMemory); }
};

/// Each operation with each code, then each pair of them, with codes that vary.
Case CaseOf(uint64_t number) {
    const auto operations = Simulated::Operations();
    const auto since = static_cast<Since>(number % SINCE_COUNT);
    uint64_t place = number / SINCE_COUNT;
    if (place < operations.size() * kCodes.size()) {
        return {{{std::string(operations[place / kCodes.size()]), kCodes.at(place % kCodes.size())}}, since};
    }
    place -= operations.size() * kCodes.size();
    const int32_t one = kCodes.at(place % kCodes.size());
    const int32_t other = kCodes.at(place / kCodes.size() % kCodes.size());
    uint64_t first = 0;
    while (place >= operations.size() - 1 - first) {
        place -= operations.size() - 1 - first;
        ++first;
    }
    return {{{std::string(operations[first]), one}, {std::string(operations[first + 1 + place]), other}}, since};
}

/// What the service was told and did, a line each.
struct Done {
    std::vector<std::string> before;  ///< while operations failed
    std::vector<std::string> after;   ///< the night after
};

/// Writes calls and deliveries down. A night that went differently used up other numbers of timers; here they count
/// from the first of the second night on.
class Notes : public Replay::RecordSink {
public:
    [[nodiscard]] const Done& Taken() const { return done_; }

    [[nodiscard]] LogLevel LeastLog() const noexcept override { return LogLevel::DEBUG; }
    void OnBegin(const Replay::Trace& trace) override {
        constexpr int64_t kToTheSecondEveningMs = 30L * 3600 * 1000;
        nightMs_ = trace.start + kToTheSecondEveningMs;
    }
    void OnStep(const Replay::Step& /*step*/) override {}
    void OnLog(int64_t t, const LogLine& line) override {
        if (t < nightMs_) {
            done_.before.emplace_back(line.text);
        }
    }
    void OnCall(int64_t t, std::string_view operation, const nlohmann::ordered_json& arguments,
                const nlohmann::ordered_json& result) override {
        nlohmann::ordered_json shown = arguments;
        const bool isNew = operation == "TimedTask.CreateTimer";
        if (t >= nightMs_ && (isNew || shown.contains("id"))) {
            nlohmann::ordered_json& id = isNew ? shown["id"] : shown.at("id");
            id = ids_.try_emplace(isNew ? result : id, ids_.size()).first->second;
        }
        Add(t, std::string(operation) + " " + shown.dump() + (isNew ? "" : " -> " + result.dump()));
    }
    void OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) override {
        Add(t, "message " + std::to_string(message.eventId) + " " + message.action +
                   (message.want ? Simulated::ToJson(*message.want).dump() : ""));
    }
    void OnDump(int64_t t, const std::string& text) override { Add(t, text); }
    void OnEnd(int64_t /*t*/, const Replay::Summary& /*summary*/) override {}

private:
    void Add(int64_t t, const std::string& what) {
        (t < nightMs_ ? done_.before : done_.after).push_back(TimeZone::Format(t, "%H:%M:%S ") + what);
    }

    int64_t nightMs_ = 0;
    std::map<nlohmann::ordered_json, size_t> ids_;
    Done done_;
};

/// The same day twice, the first time with operations that fail.
class TwoDays {
public:
    TwoDays(const std::string& path, std::string folder) : folder_(std::move(folder)) {
        std::ifstream file(path);
        std::string line;
        while (std::getline(file, line)) {
            if (header_.is_null() && line.starts_with('{')) {
                header_ = nlohmann::json::parse(line);
            } else {
                day_ += line + "\n";
            }
        }
        if (header_.is_null()) {
            throw std::runtime_error(path + ": no day to play");
        }
        header_["end"] = "+2d";
        for (const Since since : {UNDER_WAY, BEFORE}) {
            const Case well{{}, since};
            undisturbed_.at(well.StartsAnew() ? 1 : 0) = PlayText(Text(well), "undisturbed");
        }
    }

    void Play(uint64_t number, Report& report) const {
        const Case one = CaseOf(number);
        const std::string text = Text(one);
        const Done done = PlayText(text, Name(number));
        const Done& expected = undisturbed_.at(one.StartsAnew() ? 1 : 0);
        report.Count(FELT, done.before == expected.before ? 0 : 1);
        const auto [is, was] =
            std::mismatch(done.after.begin(), done.after.end(), expected.after.begin(), expected.after.end());
        if (is == done.after.end() && was == expected.after.end()) {
            return;
        }
        report.Find(Name(number), "the night after is another: " + (is == done.after.end() ? "nothing" : *is) +
                                      "; undisturbed: " + (was == expected.after.end() ? "nothing" : *was));
        if (!folder_.empty()) {
            std::ofstream(folder_ + "/faults-" + std::to_string(number) + ".jsonl") << text;
        }
    }

    /// "--first 7 (BluetoothHost.DisableBt 1, since before it began)"
    [[nodiscard]] static std::string Name(uint64_t number) {
        const Case one = CaseOf(number);
        std::string text;
        for (const auto& [operation, code] : one.faults) {
            text += operation + " " + std::to_string(code) + ", ";
        }
        return "--first " + std::to_string(number) + " (" + text +
               (one.since == BEFORE ? "since before it began)" : "under way)");
    }

private:
    [[nodiscard]] std::string Text(const Case& one) const {
        const nlohmann::json failing = one.faults;
        nlohmann::json healed = nlohmann::json::object();
        for (const auto& [operation, code] : one.faults) {
            healed[operation] = nullptr;
        }
        const auto step = [](const char* t, const char* kind, const nlohmann::json& what) {
            return nlohmann::json{{"t", t}, {kind, what}}.dump() + "\n";
        };
        nlohmann::json header = header_;
        if (one.since == BEFORE) {
            header["device"]["fail"] = failing;
        }
        std::string text = header.dump() + "\n";
        text += one.since == BEFORE ? "" : step("+1s", "set", {{"fail", failing}});
        text += day_ + (one.since == BEFORE ? step("+1d", "restart", "stop") : "");
        text += step("+1d", "set", {{"fail", healed}});
        if (one.Lasts(&Lasting::isRadioOff)) {
            text += step("+1d", "set", {{"bluetooth", {{"state", 1}}}, {"wifi", {{"enabled", true}}}});
        }
        if (one.StartsAnew()) {
            text += step("+1d", "restart", "stop");
        }
        return text + day_;
    }

    [[nodiscard]] static Done PlayText(const std::string& text, const std::string& name) {
        std::istringstream input(text);
        Notes notes;
        Replay::Play(Replay::ReadTrace(input, name), {CampaignPlugin(), {}}, notes);
        return notes.Taken();
    }

    std::string folder_;
    nlohmann::json header_;
    std::string day_;
    std::array<Done, 2> undisturbed_;  ///< by whether it starts anew
};

}  // namespace

Campaign FailEverything(const std::string& night, const std::string& folder) {
    const auto days = std::make_shared<TwoDays>(night, folder);
    return {"nights with failing operations", {"felt it"}, TwoDays::Name, [days](uint64_t number, Report& report) {
                days->Play(number, report);
            }};
}

FailCases CasesOfFailing() {
    const uint64_t operations = Simulated::Operations().size();
    const uint64_t alone = operations * kCodes.size() * SINCE_COUNT;
    return {alone, alone + operations * (operations - 1) / 2 * SINCE_COUNT};
}

}  // namespace TARN::Tests
