#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>

#include <nlohmann/json.hpp>

#include "campaigns.h"
#include "generator.h"
#include "operations.h"
#include "phone_watch.h"
#include "session.h"
#include "standby_config.h"

namespace TARN::Tests {

namespace {

using Replay::Session;
using Replay::Trace;
using Random = std::mt19937_64;

constexpr int64_t kMinuteMs = 60'000;
constexpr int64_t kRestartMs = 5'000;  ///< so long a dead service stays unnoticed at most

/// A service that starts while one of these fails has no strategies, and nobody who lifts the firewall of the life
/// before, until it starts anew.
constexpr std::array<std::string_view, 2> kNeededToStart = {"StandbyConfigManager.GetInstance",
                                                            "StandbyConfigManager.GetStrategyConfigList"};

/// A question whose answer 1 is no failure but a lie, that Bluetooth is on.
constexpr std::string_view kNumberOfOn = "BluetoothHost.GetBtState";

enum Figure : uint8_t { KILLS, FAULTS };

uint64_t UpTo(Random& random, uint64_t most) {
    return random() % most + 1;
}

/// The steps of a made-up night with operations that fail for a while, and the last screen-on.
std::string NightText(Authoring::Generator& generator, uint64_t number, bool withFaults, Random& random,
                      Report& report) {
    std::stringstream made;
    generator.Write(number, made);
    Replay::TraceLines lines;
    const Trace trace = Replay::ReadTrace(made, "made up", &lines);
    std::multimap<int64_t, std::string> steps;
    for (size_t i = 0; i < lines.steps.size(); ++i) {
        steps.emplace(trace.steps[i].t, lines.steps[i]);
    }
    const auto add = [&steps](int64_t t, const char* kind, const nlohmann::json& what) {
        steps.emplace(t, nlohmann::json{{"t", t}, {kind, what}}.dump());
    };
    for (uint64_t fault = withFaults ? random() % 4 : 0; fault > 0; --fault) {
        const auto operations = Simulated::Operations();
        const std::string operation(operations[random() % operations.size()]);
        const auto length = static_cast<uint64_t>(trace.end - trace.start);
        const int64_t from = trace.start + static_cast<int64_t>(random() % length);
        const int64_t to = from + static_cast<int64_t>(random() % static_cast<uint64_t>(trace.end - from));
        const int32_t code = fault % 2 == 0 && operation != kNumberOfOn ? 1 : -1;
        add(from, "set", {{"fail", {{operation, code}}}});
        add(to, "set", {{"fail", {{operation, nullptr}}}});
        if (std::find(kNeededToStart.begin(), kNeededToStart.end(), operation) != kNeededToStart.end()) {
            add(to, "restart", "stop");
        }
        report.Count(FAULTS);
    }
    add(trace.end, "screen", "on");
    nlohmann::json header = nlohmann::json::parse(lines.header);
    header["end"] = trace.end + kMinuteMs + kRestartMs;
    std::string text = header.dump() + "\n";
    for (const auto& [t, line] : steps) {
        text += line + "\n";
    }
    return text;
}

/// The service of a phone, killed as chance will have it.
class Victim {
public:
    Victim(const Trace& trace, Random& random)
        : random_(random), lastKillMs_(trace.end - kRestartMs), session_(trace, CampaignPlugin(), watch_) {
        watch_.Watch(session_.Phone());
        PlanKill();
        for (const Replay::Step& step : trace.steps) {
            GoTo(step.t);
            session_.Do(step);
        }
        GoTo(trace.end);
    }

    /// "BluetoothHost.DisableBt at 1772409630000, ..." in the order in which it died.
    [[nodiscard]] const std::string& Story() const { return story_; }
    [[nodiscard]] uint64_t Kills() const { return kills_; }
    [[nodiscard]] std::vector<std::string> Kept(bool everything) const { return watch_.Kept(everything); }

private:
    /// The next death: after so many touches, of any kind or of the grave ones.
    void PlanKill() {
        isGraveNext_ = random_() % 2 == 0;
        touchesLeft_ = UpTo(random_, isGraveNext_ ? 15 : 300);
    }

    void OnTouch(int64_t t, const std::string& what, bool isGrave) {
        const bool counts = !isDead_ && t <= lastKillMs_ && (isGrave || !isGraveNext_);
        if (!counts || --touchesLeft_ > 0) {
            return;
        }
        session_.Kill();
        isDead_ = true;
        ++kills_;
        story_ += (story_.empty() ? "" : ", ") + what + " at " + std::to_string(t);
    }

    void GoTo(int64_t t) {
        do {
            session_.AdvanceTo(std::min(t, session_.NowMs() + kRestartMs));
            while (isDead_) {
                isDead_ = false;
                PlanKill();
                session_.StartAgain();
            }
        } while (session_.NowMs() < t);
    }

    Random& random_;
    int64_t lastKillMs_;
    bool isDead_ = false;
    bool isGraveNext_ = false;
    uint64_t touchesLeft_ = 0;
    uint64_t kills_ = 0;
    std::string story_;
    PhoneWatch watch_{[this](int64_t t, const std::string& what, bool isGrave) { OnTouch(t, what, isGrave); }};
    Session session_;
};

/// What one night of the campaign needs, made once for all of them.
class Nights {
public:
    explicit Nights(KillOptions options) : options_(std::move(options)), generator_({options_.seed}) {
        if (!options_.config.empty()) {
            config_ = std::make_unique<DevStandbyMgr::StandbyConfigFile>(options_.config);
        }
    }

    void Play(uint64_t number, Report& report) {
        Random random(options_.seed * 1'000'003 + number);
        std::stringstream text(NightText(generator_, number, options_.withFaults, random, report));
        Trace trace = Replay::ReadTrace(text, Name(number));
        if (config_ != nullptr) {
            config_->LayOver(trace.host);
        }
        const Victim victim(trace, random);
        report.Count(KILLS, victim.Kills());
        std::string kept;
        for (const std::string& what : victim.Kept(options_.everything)) {
            kept += (kept.empty() ? "" : ", ") + what;
        }
        if (!kept.empty()) {
            report.Find(trace.name, kept + " in the morning; killed after " + victim.Story());
            if (!options_.folder.empty()) {
                std::ofstream(options_.folder + "/night-" + std::to_string(number) + ".jsonl") << text.str();
            }
        }
    }

    [[nodiscard]] std::string Name(uint64_t number) const {
        return "--seed " + std::to_string(options_.seed) + " --first " + std::to_string(number);
    }

private:
    KillOptions options_;
    Authoring::Generator generator_;
    std::unique_ptr<DevStandbyMgr::StandbyConfigFile> config_;
};

}  // namespace

Campaign KillAnywhere(const KillOptions& options) {
    const auto nights = std::make_shared<Nights>(options);
    return {"nights",
            {"kills", "faults"},
            [nights](uint64_t number) { return nights->Name(number); },
            [nights](uint64_t number, Report& report) { nights->Play(number, report); }};
}

}  // namespace TARN::Tests
