#include "slips.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <span>
#include <utility>

#include "common_event_support.h"
#include "json_fields.h"
#include "nearest_name.h"
#include "standby_constants.h"
#include "vocabulary.h"

namespace TARN::Checks {

namespace {

using namespace DevStandbyMgr;
using EventFwk::CommonEventSupport;
using Names = std::span<const std::string_view>;

/// Told in full; a night that is wrong throughout needs no more.
constexpr size_t kMostKinds = 20;
constexpr size_t kLongestName = 80;

/// A name of the trace as it stands in a slip.
std::string Cut(std::string_view name) {
    return Quote(std::string(name.substr(0, kLongestName)));
}

std::string Perhaps(Names known, std::string_view name) {
    const std::string_view nearest = NearestName(known, name);
    return nearest.empty() ? "" : "; perhaps " + std::string(nearest);
}

/// The same of broadcasts: what all of their names begin with is no likeness.
std::string PerhapsAction(Names known, std::string_view action) {
    constexpr std::string_view kPrefix = "COMMON_EVENT_";
    std::vector<std::string_view> names;
    for (const std::string_view one : known) {
        names.push_back(one.substr(kPrefix.size()));
    }
    const bool hasPrefix = action.size() > kPrefix.size() &&
                           std::equal(kPrefix.begin(), kPrefix.end(), action.begin(),
                                      [](unsigned char a, unsigned char b) { return a == std::toupper(b); });
    const std::string_view nearest = NearestName(names, hasPrefix ? action.substr(kPrefix.size()) : action);
    return nearest.empty() ? "" : "; perhaps " + std::string(kPrefix) + std::string(nearest);
}

bool IsAmong(Names known, std::string_view name) {
    return std::find(known.begin(), known.end(), name) != known.end();
}

/// Collects slips, each kind once.
class Slips {
public:
    void Add(size_t line, std::string text) {
        const auto [place, isNew] = places_.emplace(std::move(text), slips_.size());
        if (isNew) {
            slips_.push_back({line, place->first, 1});
        } else {
            ++slips_[place->second].times;
        }
    }

    [[nodiscard]] std::vector<Slip> Take() {
        std::stable_sort(slips_.begin(), slips_.end(), [](const Slip& a, const Slip& b) { return a.line < b.line; });
        if (slips_.size() > kMostKinds) {
            const size_t more = slips_.size() - kMostKinds;
            const size_t line = slips_[kMostKinds].line;
            slips_.resize(kMostKinds);
            slips_.push_back({line, "and " + std::to_string(more) + " more of the kind from here on", 1});
        }
        return std::move(slips_);
    }

private:
    std::vector<Slip> slips_;
    std::map<std::string, size_t> places_;
};

// ---- the configuration

template <class Map>
void CheckKeys(Slips& slips, size_t line, const std::string& where, const Map& map, Names known) {
    for (const auto& [name, value] : map) {
        if (!IsAmong(known, name)) {
            slips.Add(line, where + ": nobody asks for " + Cut(name) + Perhaps(known, name));
        }
    }
}

void CheckHost(Slips& slips, size_t line, const std::string& where, const StandbyConfig& config) {
    const std::vector<std::string> shipped = StandbyConfig().strategies;
    const std::vector<std::string_view> strategies(shipped.begin(), shipped.end());
    for (const std::string& name : config.strategies) {
        const bool isNone = name == "NONE" || name == "none";  // which is how none but the fixed ones is said
        if (!IsAmong(strategies, name) && !isNone) {
            slips.Add(line, where + "strategies: " + Cut(name) + " is no strategy" + Perhaps(strategies, name));
        }
    }
    CheckKeys(slips, line, where + "half_hour_switches", config.halfHourSwitches, kHalfHourSwitches);
    CheckKeys(slips, line, where + "params", config.params, kParams);
    CheckKeys(slips, line, where + "persist_allow", config.persistAllow, kPersistAllow);
    CheckKeys(slips, line, where + "res_ctrl", config.resCtrl, kResCtrl);
    for (const auto& [name, conditions] : config.persistAllow) {
        for (const auto& [condition, names] : conditions) {
            if (condition != ConditionType::DAY_STANDBY && condition != ConditionType::NIGHT_STANDBY) {
                slips.Add(line, where + "persist_allow." + name.substr(0, kLongestName) + ": the condition \"" +
                                    std::to_string(static_cast<int32_t>(condition)) +
                                    "\" never holds; \"1\" is day, \"2\" is night");
            }
        }
    }
}

// ---- facts

class FactChecks {
public:
    /// `t`: the time from which the facts hold.
    FactChecks(Slips& slips, size_t line, const char* where, int64_t t)
        : slips_(slips), line_(line), where_(where), t_(t) {}

    void Check(const Replay::SetStep& step) {
        const Simulated::FactsChange& phone = step.phone;
        constexpr int64_t kMostSlots = 64;
        constexpr int64_t kLastRadioState = 3;
        constexpr int64_t kMoving = 2;
        InRange("modem.slots", phone.simSlots, 0, kMostSlots);
        InRange("bluetooth.state", phone.bluetoothState, 0, kLastRadioState);
        InRange("bluetooth.connection", phone.bluetoothConnection, 0, kLastRadioState);
        InRange("plugged", phone.plugged, 0, INT32_MAX);
        if (phone.movement) {
            InRange("movement.value", std::optional(phone.movement->value), 0, kMoving);
        }
        if (step.host.condition) {
            InRange("condition", std::optional(static_cast<int32_t>(*step.host.condition)), ConditionType::DAY_STANDBY,
                    ConditionType::NIGHT_STANDBY);
        }
        static constexpr std::array kDeviceStates = {0, 1};
        static constexpr std::array<int32_t, 3> kAllowTypes = {AllowType::NETWORK, AllowType::RUNNING_LOCK,
                                                               AllowType::FREEZE};
        Keys("device_state", step.host.deviceState, kDeviceStates);
        Keys("allow_list", step.host.allowList, kAllowTypes);
        Keys("restrict_set", step.host.restrictSet, kAllowTypes);
        CheckProcesses(phone);
        CheckSettings(phone);
        for (const auto& [name, value] : phone.parameters) {
            // a phone has many that nobody here reads
            const std::string nearest = IsAmong(kParameters, name) ? "" : Perhaps(kParameters, name);
            if (!nearest.empty()) {
                Add("parameters", "nobody reads " + Cut(name) + nearest);
            }
        }
    }

private:
    void Add(std::string_view fact, const std::string& what) {
        slips_.Add(line_, std::string(where_).append(".").append(fact).append(": ").append(what));
    }

    void InRange(std::string_view fact, std::optional<int32_t> value, int64_t least, int64_t most) {
        if (value && (*value < least || *value > most)) {
            const std::string range = most == INT32_MAX ? std::to_string(least) + " or more"
                                                        : std::to_string(least) + " to " + std::to_string(most);
            Add(fact, std::to_string(*value) + " means nothing; " + range + " does");
        }
    }

    template <class Map>
    void Keys(std::string_view fact, const Map& map, std::span<const int32_t> known) {
        for (const auto& [type, value] : map) {
            if (std::find(known.begin(), known.end(), type) == known.end()) {
                std::string names;
                for (const int32_t one : known) {
                    names += (names.empty() ? "" : ", ") + std::to_string(one);
                }
                Add(fact, "nobody asks for the type " + std::to_string(type) + "; the types are " + names);
            }
        }
    }

    void CheckProcesses(const Simulated::FactsChange& phone) {
        if (!phone.processes) {
            return;
        }
        std::map<int32_t, int> seen;
        for (const Simulated::Process& process : *phone.processes) {
            if (++seen[process.pid] == 2) {
                Add("processes", "two processes have the pid " + std::to_string(process.pid));
            }
        }
    }

    void CheckSettings(const Simulated::FactsChange& phone) {
        constexpr std::string_view kPhoneTable = "SETTINGSDATA";
        for (const auto& [table, rows] : phone.settings) {
            if (!rows) {
                continue;
            }
            const Names known = table == kPhoneTable ? Names(kPhoneSettings) : Names(kAccountSettings);
            for (const auto& [keyword, value] : *rows) {
                // a phone's tables hold much that nobody here asks for
                if (const std::string nearest = Perhaps(known, keyword); !IsAmong(known, keyword) && !nearest.empty()) {
                    Add("settings." + table, "nobody asks for " + Cut(keyword) + nearest);
                } else if (keyword == kPhoneSettings[0] && value) {
                    CheckAlarm(table + "." + keyword, *value);
                }
            }
        }
    }

    void CheckAlarm(const std::string& row, const std::string& value) {
        constexpr int64_t kSecondsMs =
            20'000'000'000;  // today's time in seconds, taken for milliseconds, is below this
        int64_t ms = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), ms);
        if (error != std::errc() || end != value.data() + value.size()) {
            Add("settings." + row, Cut(value) + " is no number of milliseconds; the fact \"alarm\" takes a time");
        } else if (ms > 0 && ms < kSecondsMs && t_ > kSecondsMs) {
            Add("settings." + row, Cut(value) + " is in 1970; it is read as milliseconds, not as seconds");
        }
    }

    Slips& slips_;
    size_t line_;
    std::string_view where_;
    int64_t t_;
};

// ---- messages and broadcasts

std::string TypeName(MemberType type) {
    static constexpr std::array kNames = {"true or false", "an integer", "a number with a point", "a string"};
    return kNames.at(static_cast<size_t>(type));
}

void CheckWant(Slips& slips, size_t line, const std::string& where, const AAFwk::Want& want,
               std::span<const Member> members) {
    std::vector<std::string_view> names;
    for (const Member& member : members) {
        names.push_back(member.name);
    }
    for (const auto& [name, value] : want.GetParams()) {
        const auto member = std::find(names.begin(), names.end(), name);
        if (member == names.end()) {
            slips.Add(line, where + ": nobody asks for the member " + Cut(name) + Perhaps(names, name));
            continue;
        }
        const Member& known = members[static_cast<size_t>(member - names.begin())];
        const std::string at = where + "." + name + ": ";
        const int64_t* integer = std::get_if<int64_t>(&value);
        if (value.index() != static_cast<size_t>(known.type)) {
            slips.Add(line, at + "not " + TypeName(known.type) + ", so it counts as not there");
        } else if (integer != nullptr && (*integer < known.least || *integer > known.most)) {
            slips.Add(line, at + std::to_string(*integer) + " means nothing; " + std::to_string(known.least) + " to " +
                                std::to_string(known.most) + " does");
        }
    }
}

void CheckMessage(Slips& slips, size_t line, const StandbyMessage& message) {
    const auto known = KnownMessages();
    const auto found = std::find_if(known.begin(), known.end(),
                                    [&](const KnownMessage& one) { return one.eventId == message.eventId; });
    const std::string where = "message " + std::to_string(message.eventId);
    if (found == known.end()) {
        slips.Add(line, where + ": nobody handles it");
        return;
    }
    std::span<const Member> members = found->members;
    if (message.eventId == StandbyMessageType::COMMON_EVENT) {
        static const std::vector<std::string_view> actions = MatchedActions();
        if (!IsAmong(actions, message.action)) {
            slips.Add(line, where + ": no strategy matches the action " + Cut(message.action) +
                                PerhapsAction(actions, message.action));
            return;
        }
        members = BroadcastMembers(message.action);
        if (members.empty()) {
            return;  // whatever it carries, nobody looks
        }
    }
    CheckWant(slips, line, where, message.Params(), members);
}

void CheckDump(Slips& slips, size_t line, const Replay::DumpStep& dump) {
    for (const std::string& word : dump.words) {
        // any word may stand where only its place counts
        const bool isMeant = word.starts_with("--") || word.starts_with("DUMP_");
        const std::string nearest = isMeant && !IsAmong(kDumpWords, word) ? Perhaps(kDumpWords, word) : "";
        if (!nearest.empty()) {
            slips.Add(line, "dump: nobody knows the word " + Cut(word) + nearest);
        }
    }
}

void CheckBroadcast(Slips& slips, size_t line, const AAFwk::Want& want, HostMode mode) {
    const std::string& action = want.GetAction();
    static const std::vector<std::string_view> all = HeardBroadcasts();
    const auto where = [&action] { return "broadcast " + Cut(action); };
    if (!IsAmong(all, action)) {
        slips.Add(line, where() + ": nobody listens to it" + PerhapsAction(all, action));
        return;
    }
    if (mode == HostMode::SCRIPTED && !IsAmong(ListenerBroadcasts(), action)) {
        const bool isMatched = IsAmong(MatchedActions(), action);
        slips.Add(line, where() + ": nobody hears it, for the host is scripted" +
                            (isMatched ? "; a message 1 with this action reaches the strategies" : ""));
        return;
    }
    if (const auto members = BroadcastMembers(action); !members.empty()) {
        CheckWant(slips, line, where(), want, members);
    }
}

// ---- what goes together

/// A change of a fact, or a broadcast that tells of it.
struct Told {
    int64_t t;
    size_t line;
    bool isOn;
};

/// A fact and the broadcasts that tell of it, as far as a trace names them; both within a minute are one event. Keeps
/// the last minute only.
class Pair {
public:
    /// Is called with a change of the fact that no broadcast tells of, and with a broadcast that tells of what is not
    /// so.
    using Tell = std::function<void(const Told&)>;

    Pair(bool isOn, Tell untold, Tell untrue) : isOn_(isOn), untold_(std::move(untold)), untrue_(std::move(untrue)) {}

    void Fact(int64_t t, size_t line, bool isOn) {
        if (isOn != isOn_) {
            Add(facts_[isOn ? 1 : 0], broadcasts_[isOn ? 1 : 0], {t, line, isOn}, /*isAlone=*/true);
        }
        isOn_ = isOn;
    }

    void Broadcast(int64_t t, size_t line, bool isOn) {
        Add(broadcasts_[isOn ? 1 : 0], facts_[isOn ? 1 : 0], {t, line, isOn}, isOn != isOn_);
    }

    /// It is `t` now.
    void MoveTo(int64_t t) {
        for (size_t isOn : {0, 1}) {
            Forget(facts_[isOn], t - kNearMs, untold_);
            Forget(broadcasts_[isOn], t - kNearMs, untrue_);
        }
    }

    void Finish() { MoveTo(std::numeric_limits<int64_t>::max()); }

private:
    static constexpr int64_t kNearMs = 60'000;

    /// Those of one kind that turn one way.
    struct Half {
        std::optional<int64_t> last;
        std::deque<Told> waiting;  ///< for their other half
    };

    static void Add(Half& own, Half& other, const Told& one, bool isAlone) {
        own.last = one.t;
        other.waiting.clear();
        if (isAlone && (!other.last || *other.last < one.t - kNearMs)) {
            own.waiting.push_back(one);
        }
    }

    static void Forget(Half& half, int64_t before, const Tell& tell) {
        for (; !half.waiting.empty() && half.waiting.front().t < before; half.waiting.pop_front()) {
            tell(half.waiting.front());
        }
    }

    bool isOn_;
    Tell untold_;
    Tell untrue_;
    std::array<Half, 2> facts_;
    std::array<Half, 2> broadcasts_;
};

/// In automatic mode: charger and full power save, whose facts report nothing by themselves.
class Pairs {
public:
    Pairs(const Simulated::FactsChange& start, Slips& slips)
        : charger_(
              start.plugged.value_or(0) != 0,
              [&slips](const Told& fact) {
                  slips.Add(fact.line, "set.plugged: nobody is told, for no " + std::string(ChargerAction(fact.isOn)) +
                                           " goes with it; the step \"charger\" does both");
              },
              [&slips](const Told& broadcast) {
                  slips.Add(broadcast.line, "broadcast " + Cut(ChargerAction(broadcast.isOn)) +
                                                ": the fact \"plugged\" says otherwise; the step "
                                                "\"charger\" does both");
              }),
          fullSave_(
              start.deviceMode.value_or(0) == kFullSave,
              [&slips](const Told& fact) {
                  slips.Add(fact.line, "set.device_mode: nobody is told, for no " +
                                           std::string(CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED) +
                                           " goes with it");
              },
              [](const Told& /*broadcast*/) {}) {}

    void Note(const Replay::Step& step) {
        charger_.MoveTo(step.t);
        fullSave_.MoveTo(step.t);
        if (const auto* set = std::get_if<Replay::SetStep>(&step.what)) {
            if (set->phone.plugged) {
                charger_.Fact(step.t, step.line, *set->phone.plugged != 0);
            }
            if (set->phone.deviceMode) {
                fullSave_.Fact(step.t, step.line, *set->phone.deviceMode == kFullSave);
            }
        } else if (const auto* message = std::get_if<Replay::MessageStep>(&step.what)) {
            if (message->message.eventId == StandbyMessageType::COMMON_EVENT) {
                NoteAction(step, message->message.action);
            }
        } else if (const auto* broadcast = std::get_if<Replay::BroadcastStep>(&step.what)) {
            NoteAction(step, broadcast->want.GetAction());
        }
    }

    void Finish() {
        charger_.Finish();
        fullSave_.Finish();
    }

private:
    static std::string_view ChargerAction(bool isOn) {
        return isOn ? CommonEventSupport::COMMON_EVENT_CHARGING : CommonEventSupport::COMMON_EVENT_DISCHARGING;
    }

    static constexpr int32_t kFullSave = 603;

    void NoteAction(const Replay::Step& step, std::string_view action) {
        if (action == CommonEventSupport::COMMON_EVENT_CHARGING ||
            action == CommonEventSupport::COMMON_EVENT_DISCHARGING) {
            charger_.Broadcast(step.t, step.line, action == CommonEventSupport::COMMON_EVENT_CHARGING);
        } else if (action == CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED) {
            fullSave_.Broadcast(step.t, step.line, true);  // it goes with either change
            fullSave_.Broadcast(step.t, step.line, false);
        }
    }

    Pair charger_;
    Pair fullSave_;
};

}  // namespace

struct SlipFinder::Parts {
    explicit Parts(const Replay::Trace& head)
        : mode(head.host.mode), before(head.start), pairs(head.device.phone, slips) {}

    void Check(const Replay::Step& step, const Replay::SetStep& set) {
        FactChecks(slips, step.line, "set", step.t).Check(set);
    }
    void Check(const Replay::Step& step, const Replay::MessageStep& message) {
        CheckMessage(slips, step.line, message.message);
    }
    void Check(const Replay::Step& step, const Replay::BroadcastStep& broadcast) {
        CheckBroadcast(slips, step.line, broadcast.want, mode);
    }
    void Check(const Replay::Step& step, const Replay::DumpStep& dump) { CheckDump(slips, step.line, dump); }
    void Check(const Replay::Step& /*step*/, const Replay::RestartStep& /*restart*/) {}
    void Check(const Replay::Step& /*step*/, const Replay::FileStep& /*file*/) {}

    Slips slips;
    HostMode mode;
    int64_t before;  ///< when the last step was
    Pairs pairs;
};

SlipFinder::SlipFinder(const Replay::Trace& head) : my_(std::make_unique<Parts>(head)) {
    CheckHost(my_->slips, head.headerLine, "host.", head.host);
    FactChecks(my_->slips, head.headerLine, "device", head.start).Check(head.device);
}

SlipFinder::~SlipFinder() = default;

void SlipFinder::Look(const Replay::Step& step) {
    constexpr int64_t kHalfDayMs = 12L * 3600 * 1000;
    const auto day = [](int64_t t) { return Replay::TimeZone::Format(t, "%F"); };
    if (step.isTimeOfDay && step.t - my_->before > kHalfDayMs && day(step.t) != day(my_->before)) {
        my_->slips.Add(step.line, "t: the time of day is that of " + Replay::TimeZone::Format(step.t, "%a %-d %b") +
                                      ", more than half a day after what is before it; a date says which day is meant");
    }
    my_->before = step.t;
    if (my_->mode == HostMode::AUTOMATIC) {
        my_->pairs.Note(step);
    }
    std::visit([&](const auto& what) { my_->Check(step, what); }, step.what);
}

std::vector<Slip> SlipFinder::Take() {
    my_->pairs.Finish();
    return my_->slips.Take();
}

std::vector<Slip> FindSlips(const Replay::Trace& trace) {
    SlipFinder finder(trace);
    for (const Replay::Step& step : trace.steps) {
        finder.Look(step);
    }
    return finder.Take();
}

std::vector<Slip> FindSlips(const StandbyConfig& config) {
    Slips slips;
    CheckHost(slips, 0, "", config);
    return slips.Take();
}

}  // namespace TARN::Checks
