#include "sides.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "inputs.h"
#include "json_fields.h"

namespace TARN::Cli {

namespace {

using Names = std::vector<std::string>;

constexpr size_t kMostSides = 2;

/// What a list holds for a side: its own, or the one that is there for both; null if there is none.
template <class T>
const T* OfSide(const std::vector<T>& list, size_t side) {
    return list.empty() ? nullptr : &list[std::min(side, list.size() - 1)];
}

/// What a name of a pair is called: the file alone where that tells the two apart.
std::string Label(const Names& names, size_t side, const char* ofNone) {
    const auto file = [](const std::string& name) { return std::filesystem::path(name).filename().string(); };
    const std::string& name = names[side];
    return name.empty() ? ofNone : file(names.front()) == file(names.back()) ? name : file(name);
}

}  // namespace

std::string LabelOf(const SideNames& names, size_t side) {
    std::string label;
    const auto add = [&](const Names& list, const char* ofNone) {
        if (list.size() == kMostSides && list.front() != list.back()) {
            label.append(label.empty() ? "" : ", ").append(Label(list, side, ofNone));
        }
    };
    add(names.traces, "");
    add(names.configs, names.traces.size() == 1 ? "the trace's own configuration" : "the traces' own configuration");
    add(names.plugins, "");
    return !label.empty() ? label : side == 0 ? "first" : "second";
}

std::vector<Side> MakeSides(const SideNames& names, const std::vector<Replay::Trace>& traces, SlipWatch& slips) {
    std::for_each(traces.begin(), traces.end(), [&slips](const Replay::Trace& trace) { slips.Look(trace); });
    const size_t sides = std::max({names.traces.size(), names.configs.size(), names.plugins.size()});
    if (sides > kMostSides) {
        throw DevStandbyMgr::InputError("at most two traces, configurations or plugins are held against each other");
    }
    std::vector<ConfigFile> configs;
    for (const std::string& name : names.configs) {
        configs.push_back(ReadConfig(name, slips));
    }
    std::vector<Side> result;
    for (size_t side = 0; side < sides; ++side) {
        result.push_back({sides == 1 ? names.traces.front() : LabelOf(names, side), *OfSide(traces, side),
                          *OfSide(names.plugins, side)});
        if (const auto* config = OfSide(configs, side); config != nullptr && *config) {
            (*config)->LayOver(result.back().trace.host);
        }
    }
    return result;
}

std::vector<Side> ReadSides(const SideNames& names, SlipWatch& slips) {
    if (std::count(names.traces.begin(), names.traces.end(), "-") > 1) {
        throw DevStandbyMgr::InputError("- stands for standard input, which can be read once only");
    }
    std::vector<Replay::Trace> traces;
    for (const std::string& name : names.traces) {
        traces.push_back(ReadInput(name));
    }
    return MakeSides(names, traces, slips);
}

}  // namespace TARN::Cli
