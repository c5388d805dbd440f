#include "compare_command.h"

#include <algorithm>
#include <array>
#include <deque>
#include <memory>
#include <optional>
#include <utility>

#include "exit_status.h"
#include "inputs.h"
#include "night_pair.h"
#include "night_reader.h"
#include "player.h"
#include "progress.h"
#include "sides.h"
#include "slip_watch.h"
#include "worker_pool.h"

namespace TARN::Cli {

namespace {

using Story::kSides;

enum class PairFormat : uint8_t { TEXT, JSONL, CSV };

constexpr std::array kPairFormats = {Word<PairFormat>{"text", PairFormat::TEXT},
                                     Word<PairFormat>{"jsonl", PairFormat::JSONL},
                                     Word<PairFormat>{"csv", PairFormat::CSV}};

struct CompareOptions {
    ManyTraces many;
    SideNames names;  ///< two configurations, two plugins, or both; no traces
    PairFormat format = PairFormat::TEXT;
    bool isStrict = false;  ///< a slip is an error
    bool isProgressHidden = false;
};

constexpr char kCompareFooter[] =
    "Examples:\n"
    "  standby compare --config try.json nights/              as the traces have it, and with try.json\n"
    "  standby compare --config a.json --config b.json nights/\n"
    "  standby compare --plugin OTHER.so nights/              the plugin built with this program, and another\n"
    "  standby compare --config try.json --format csv nights/ > nights.csv\n";

constexpr std::array<const char*, kSides> kSideNames = {"A", "B"};

int RunCompare(const CompareOptions& options, OutputFile& output) {
    Progress progress(!options.isProgressHidden);
    TraceNames traces(options.many.names, options.many.list);
    SlipWatch slips(options.isStrict, [&progress](const std::string& line) {
        progress.Erase();
        Complain(line);
    });
    std::vector<ConfigFile> configs(kSides);
    for (size_t side = 0; side < options.names.configs.size(); ++side) {
        configs[side] = ReadConfig(options.names.configs[side], slips);
    }
    const std::array<std::string, kSides> labels = {LabelOf(options.names, 0), LabelOf(options.names, 1)};
    output.BeforeWriting([&progress] { progress.Erase(); });

    const auto work = [&](const std::string& name, std::ostream& result, const WorkerPool::Note& note) {
        const Replay::Trace read = ReadInput(name);
        SlipWatch(options.isStrict, note).Look(read);
        std::deque<Story::NightReader> readers;
        for (size_t side = 0; side < kSides; ++side) {
            Replay::Trace trace = read;
            if (configs[side]) {
                configs[side]->LayOver(trace.host);
            }
            Replay::Play(trace, {options.names.plugins[side], nullptr, {}, std::string(kSideNames[side])},
                         readers.emplace_back());
        }
        result << Pack(Story::ComparePair({&readers[0].Result(), &readers[1].Result()}));
    };
    Story::PairTally tally;
    bool hasHead = false;
    std::string packed;
    const auto take = [&](const Story::NightPair& pair) {
        tally.Add(pair);
        if (options.format == PairFormat::CSV && !std::exchange(hasHead, true)) {
            output.Stream() << Story::CsvHead(pair) << '\n';
        }
        if (options.format == PairFormat::CSV) {
            output.Stream() << Story::ToCsvLine(pair) << '\n';
        } else if (options.format == PairFormat::JSONL) {
            output.Stream() << ToJson(pair).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
                            << '\n';
        }
    };
    WorkerPool pool(
        options.many.jobs, work,
        [&](const std::string& /*name*/, std::string_view piece, bool isFirst) {
            if (isFirst && !packed.empty()) {
                take(Story::UnpackPair(std::exchange(packed, {})));
            }
            packed.append(piece);
            return !output.IsBroken();
        },
        [&](size_t done, size_t known) {
            progress.Show("playing", static_cast<double>(done) / static_cast<double>(known));
        });
    const int status = pool.Run(traces);
    if (!packed.empty()) {
        take(Story::UnpackPair(packed));
    }
    if (options.format == PairFormat::TEXT) {
        tally.Tell(labels, output.Stream());
    } else if (options.format == PairFormat::JSONL) {
        output.Stream() << nlohmann::ordered_json{{"all", tally.ToJson(labels)}}.dump() << '\n';
    }
    progress.Erase();
    return std::max(output.Finish(), status);
}

/// What is named once is for the second side: the first is as the traces have it, under the plugin built with this
/// program.
void Complete(SideNames& names) {
    if (std::max(names.configs.size(), names.plugins.size()) > kSides) {
        throw CLI::ValidationError("at most two configurations or plugins are held against each other");
    }
    if (names.configs.empty() && names.plugins.empty()) {
        throw CLI::ValidationError("nothing to compare with; expected --config or --plugin");
    }
    if (names.configs.size() == 1) {
        names.configs.insert(names.configs.begin(), "");
    }
    while (names.plugins.size() < kSides) {
        names.plugins.insert(names.plugins.begin(), DefaultPlugin());
    }
}

}  // namespace

void AddCompare(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<CompareOptions>();
    CompareOptions& options = *shared;
    CLI::App& command =
        *app.add_subcommand("compare", "Play many traces under two configurations or plugins; tell the difference");
    command.footer(kCompareFooter);
    AddManyTraces(command, options.many);
    AddChoice(command, "--format", "FORMAT", kPairFormats, options.format,
              "text, a table for people (default); jsonl or csv, a line a trace");
    AddStrict(command, options.isStrict);
    AddSideOptions(command, options.names, options.isProgressHidden);
    command.callback([shared, &action] {
        CheckNamed(shared->many);
        Complete(shared->names);
        action = [shared](OutputFile& output) { return RunCompare(*shared, output); };
    });
}

}  // namespace TARN::Cli
