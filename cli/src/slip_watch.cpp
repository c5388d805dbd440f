#include "slip_watch.h"

#include <utility>

#include "json_fields.h"

namespace TARN::Cli {

SlipWatch::SlipWatch(bool isStrict, std::function<void(const std::string& line)> tell)
    : isStrict_(isStrict), tell_(std::move(tell)) {}

void SlipWatch::Look(const Replay::Trace& trace) {
    Tell(Checks::FindSlips(trace), trace.name);
}

void SlipWatch::Look(const DevStandbyMgr::StandbyConfig& config, const std::string& name) {
    Tell(Checks::FindSlips(config), name);
}

PlayableTrace SlipWatch::Read(const std::string& name) {
    std::optional<Checks::SlipFinder> finder;
    PlayableTrace trace(
        name, [&finder](const Replay::Trace& head) { finder.emplace(head); },
        [&finder](const Replay::Step& step) { finder->Look(step); });
    Tell(finder->Take(), trace.Head().name);
    return trace;
}

void SlipWatch::Tell(const std::vector<Checks::Slip>& slips, const std::string& name) {
    for (const Checks::Slip& slip : slips) {
        tell_(name + (slip.line == 0 ? "" : ":" + std::to_string(slip.line)) + ": " + slip.text +
              (slip.times == 1 ? "" : " (" + std::to_string(slip.times) + " times)"));
        ++count_;
    }
    if (isStrict_ && !slips.empty()) {
        throw DevStandbyMgr::InputError(name + ": a slip is an error here, for --strict is given");
    }
}

ConfigFile ReadConfig(const std::string& name, SlipWatch& slips) {
    if (name.empty()) {
        return std::nullopt;
    }
    ConfigFile config(name);
    DevStandbyMgr::StandbyConfig alone;
    config->LayOver(alone);
    slips.Look(alone, name);
    return config;
}

}  // namespace TARN::Cli
