// The state machine, moved by hand.
#include <array>

#include <nlohmann/json.hpp>

#include "commands.h"
#include "json_fields.h"

namespace TARN::Shell {

namespace {

void MoveState(Bench& bench, const nlohmann::json& dumpWords) {
    if (bench.phone.Trace().host.mode == DevStandbyMgr::HostMode::SCRIPTED) {
        DevStandbyMgr::Refuse("", "the host of this trace is scripted and has no state of its own",
                              "message 2 {\"PREVIOUS_STATE\": 0, \"CURRENT_STATE\": 1}");
    }
    bench.phone.Do({{"dump", dumpWords.dump()}});
    bench.news.RepeatStates(true);
    bench.TellNews();
    bench.news.RepeatStates(false);
    bench.output << bench.hearing.TakeDump();
}

void Step(Bench& bench, Arguments& words) {
    words.End();
    MoveState(bench, {"step"});
}

void ForceIdle(Bench& bench, Arguments& words) {
    const std::string depth = words.MaybeWord().value_or("deep");
    words.End();
    if (depth != "light" && depth != "deep") {
        words.Misused(DevStandbyMgr::Quote(depth));
    }
    MoveState(bench, {"force-idle", depth});
}

void Unforce(Bench& bench, Arguments& words) {
    words.End();
    MoveState(bench, {"unforce"});
}

constexpr std::array kCommands = {
    Command{"step", "", "The state goes on as if its time were over", "What holds the step back counts.", Step},
    Command{"force-idle", "[light|deep]", "Goes to SLEEP, to its first or last phase, and stays there",
            "Screen, charger and movement do not count until unforce.", ForceIdle},
    Command{"unforce", "", "Time and events count again", "", Unforce},
};

}  // namespace

std::span<const Command> StateCommands() {
    return kCommands;
}

}  // namespace TARN::Shell
