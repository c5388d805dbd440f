// What can be asked, kept and learned.
#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>

#include "commands.h"
#include "condition_watch.h"
#include "device_state_cache.h"
#include "istate_manager_adapter.h"
#include "json_fields.h"
#include "power_mgr_client.h"
#include "simulated_phone.h"
#include "standby_constants.h"
#include "standby_names.h"
#include "standby_service_impl.h"
#include "suspend_manager_client.h"
#include "time_service_client.h"
#include "time_zone.h"
#include "why.h"

namespace TARN::Shell {

namespace {

using DevStandbyMgr::Quote;
using DevStandbyMgr::Refuse;
using Simulated::PhoneFacts;

constexpr char kUnknown[] = "unknown";

std::string YesNo(bool isSo) {
    return isSo ? "yes" : "no";
}

std::string OnOff(bool isOn) {
    return isOn ? "on" : "off";
}

const PhoneFacts& Facts(Bench& bench) {
    return bench.phone.Phone().Facts();
}

std::string LaneNow(Bench& bench, Story::LaneId lane) {
    const Story::Interval* now = bench.hearing.Night().At(lane).Now();
    return now == nullptr || now->value == Story::kNotKnown ? kUnknown : now->value;
}

std::string State(Bench& bench) {
    return DevStandbyMgr::StateName(bench.phone.Service().GetStateManager()->GetCurState());
}

std::string Phase(Bench& bench) {
    const std::string phase = LaneNow(bench, Story::LaneId::PHASE);
    return phase.empty() ? "none" : phase;
}

std::string ScreenNow(Bench& bench) {
    const auto isOn = bench.phone.Phone().Power().IsScreenOn();
    return isOn ? OnOff(*isOn) : kUnknown;
}

std::string Charging(Bench& bench) {
    return YesNo(Facts(bench).plugged != 0);
}

std::string Number(const std::optional<float>& reading) {
    if (!reading) {
        return "none";
    }
    constexpr size_t kRoom = 32;
    std::array<char, kRoom> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), *reading).ptr;
    return {text.data(), end};
}

std::string Light(Bench& bench) {
    return Number(Facts(bench).light);
}

std::string Proximity(Bench& bench) {
    return Number(Facts(bench).proximity);
}

std::string Movement(Bench& bench) {
    const int32_t value = Facts(bench).movement.value;
    return value == 1 ? "still" : value == 2 ? "moving" : kUnknown;
}

std::string BluetoothNow(Bench& bench) {
    switch (Facts(bench).bluetoothState) {
        case 1:
            return Facts(bench).bluetoothConnection == 1 ? "connected" : "on";
        case 3:
            return "off";
        default:
            return "changing";
    }
}

std::string WifiNow(Bench& bench) {
    return Facts(bench).isWifiPresent ? OnOff(Facts(bench).isWifiEnabled) : "absent";
}

std::string Modem(Bench& bench) {
    std::string word = LaneNow(bench, Story::LaneId::MODEM);
    std::replace(word.begin(), word.end(), ' ', '-');
    return word;
}

std::string ModeNow(Bench& bench) {
    return std::to_string(Facts(bench).deviceMode);
}

std::string Condition(Bench& bench) {
    const uint32_t condition = bench.phone.Service().GetConditionWatch().At(0);
    return condition == DevStandbyMgr::ConditionType::DAY_STANDBY     ? "day"
           : condition == DevStandbyMgr::ConditionType::NIGHT_STANDBY ? "night"
                                                                      : std::to_string(condition);
}

std::string CallNow(Bench& bench) {
    using DevStandbyMgr::DeviceStateCache;
    return YesNo(bench.phone.Service().GetDeviceStateCache()->GetDeviceState(DeviceStateCache::TELEPHONE_STATE_CHANGE));
}

std::string Sleep(Bench& bench) {
    return LaneNow(bench, Story::LaneId::SLEEP);
}

std::string Firewall(Bench& bench) {
    return LaneNow(bench, Story::LaneId::FIREWALL);
}

std::string Frozen(Bench& bench) {
    std::vector<SuspendManager::NativeProcessInfo> processes;
    const bool isKnown = bench.phone.Phone().Suspend().GetFrozenProcesses(processes) == 0;
    return isKnown ? std::to_string(processes.size()) : kUnknown;
}

std::string Locks(Bench& bench) {
    std::vector<std::pair<int32_t, int32_t>> processes;
    const bool isKnown = bench.phone.Phone().Power().GetProxiedRunningLocks(processes) == 0;
    return isKnown ? std::to_string(processes.size()) : kUnknown;
}

std::string Timers(Bench& bench) {
    MiscServices::TimerBatching batching;
    const bool isKnown = bench.phone.Phone().Time().GetTimerBatching(batching) == 0;
    return isKnown ? std::to_string(batching.isAdjusted ? batching.intervalSeconds : 0) : kUnknown;
}

std::string TimeNow(Bench& bench) {
    return Replay::TimeZone::Format(bench.phone.NowMs(), "%FT%T");
}

struct Value {
    const char* name;
    std::string (*get)(Bench& bench);
};
constexpr std::array kValues = {Value{"state", State},       Value{"phase", Phase},
                                Value{"screen", ScreenNow},  Value{"charging", Charging},
                                Value{"light", Light},       Value{"proximity", Proximity},
                                Value{"movement", Movement}, Value{"bluetooth", BluetoothNow},
                                Value{"wifi", WifiNow},      Value{"modem", Modem},
                                Value{"mode", ModeNow},      Value{"condition", Condition},
                                Value{"call", CallNow},      Value{"sleep", Sleep},
                                Value{"firewall", Firewall}, Value{"frozen", Frozen},
                                Value{"locks", Locks},       Value{"timers", Timers},
                                Value{"time", TimeNow}};

void Get(Bench& bench, Arguments& words) {
    const auto word = words.MaybeWord();
    words.End();
    if (!word) {
        for (const Value& value : kValues) {
            bench.output << value.name << ' ' << value.get(bench) << '\n';
        }
        return;
    }
    const auto value =
        std::find_if(kValues.begin(), kValues.end(), [&](const Value& one) { return *word == one.name; });
    if (value == kValues.end()) {
        std::string known;
        for (const Value& one : kValues) {
            known.append(known.empty() ? "" : ", ").append(one.name);
        }
        Refuse("", Quote(*word), "one of " + known);
    }
    bench.output << value->get(bench) << '\n';
}

void Dump(Bench& bench, Arguments& words) {
    auto dumpWords = nlohmann::json::array();
    while (const auto word = words.MaybeWord()) {
        dumpWords.push_back(*word);
    }
    if (dumpWords.empty()) {
        dumpWords = {DevStandbyMgr::DUMP_DETAIL_INFO, DevStandbyMgr::DUMP_STRATGY_DETAIL};
    }
    bench.phone.Do({{"dump", dumpWords.dump()}});
    const std::string text = bench.hearing.TakeDump();
    bench.output << text << (text.empty() || text.ends_with('\n') ? "" : "\n");
}

void Why(Bench& bench, Arguments& words) {
    Story::WhyQuestion question;
    while (const auto word = words.MaybeWord()) {
        if (*word == "--app") {
            question.app = words.Word();
        } else if (!(question.about = Story::AboutOf(*word))) {
            std::string known;
            for (size_t i = 0; i < Story::kAbouts; ++i) {
                known.append(known.empty() ? "" : ", ").append(Story::WordOf(static_cast<Story::About>(i)));
            }
            Refuse("", Quote(*word), "one of " + known + ", or --app NAME");
        }
    }
    Story::Tell(Story::Ask(bench.hearing.Night(), bench.phone.NowMs(), question), bench.output);
}

void Timeline(Bench& bench, Arguments& words) {
    words.End();
    bench.TellAll();
}

void Save(Bench& bench, Arguments& words) {
    const std::string name = words.Rest();
    if (name.empty()) {
        words.Misused("something is missing");
    }
    errno = 0;
    std::ofstream file(name, std::ios::binary | std::ios::trunc);
    if (!file.is_open() || !(file << bench.phone.Done()).flush()) {
        Refuse(name, std::strerror(errno), "a file that can be written");
    }
    const size_t steps = bench.phone.Steps();
    bench.output << steps << (steps == 1 ? " step" : " steps") << " in " << name << "; standby replay " << name
                 << " plays them\n";
}

void Help(Bench& bench, Arguments& words) {
    const auto word = words.MaybeWord();
    words.End();
    if (word) {
        const Command* command = FindCommand(*word);
        if (command == nullptr) {
            Refuse("", Quote(*word), "a command; help alone tells all of them");
        }
        bench.output << UsageOf(*command) << "\n  " << command->about << '\n';
        if (!command->more.empty()) {
            bench.output << "  " << command->more << '\n';
        }
        return;
    }
    constexpr size_t kColumn = 40;
    for (const CommandGroup& group : CommandGroups()) {
        bench.output << group.title << '\n';
        for (const Command& command : group.commands) {
            const std::string usage = "  " + UsageOf(command);
            bench.output << usage << std::string(kColumn - std::min(usage.size(), kColumn - 2), ' ') << command.about
                         << '\n';
        }
    }
}

void Quit(Bench& bench, Arguments& words) {
    words.End();
    bench.isLeaving = true;
}

constexpr std::array kCommands = {
    Command{"get", "[VALUE]", "One value in one word; alone: all of them", "", Get},
    Command{"why", "[ABOUT] [--app NAME]", "Why it is as it is, of one thing, of an application, or in brief", "", Why},
    Command{"timeline", "", "All that happened so far", "", Timeline},
    Command{"dump", "[DUMPWORD...]", "The dump of host and strategies", "", Dump},
    Command{"save", "FILE", "Writes all that was done as a trace", "", Save},
    Command{"help", "[WORD]", "These lines, or those of one word", "", Help},
    Command{"quit", "", "Leaves; so does the end of the input", "", Quit},
};

}  // namespace

std::vector<std::string> ValueNames() {
    std::vector<std::string> names;
    for (const Value& value : kValues) {
        names.emplace_back(value.name);
    }
    return names;
}

std::span<const Command> AskingCommands() {
    return kCommands;
}

}  // namespace TARN::Shell
