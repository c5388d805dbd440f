#include "diff_command.h"

#include <unistd.h>
#include <memory>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <utility>

#include "comparison.h"
#include "exit_status.h"
#include "inputs.h"
#include "json_fields.h"
#include "jsonl_writer.h"
#include "night_reader.h"
#include "player.h"
#include "progress.h"
#include "record_reader.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;
using DevStandbyMgr::Refuse;
using nlohmann::ordered_json;

struct DiffOptions {
    SideNames names;  ///< of traces or records: one or two; two of each where a run of one is held against another
    AnswerFormat format = AnswerFormat::TEXT;
    bool isProgressHidden = false;
};

constexpr char kDiffFooter[] =
    "A and B are records, as replay --format jsonl writes them, or traces, which are played. One trace is held\n"
    "against itself under another configuration or plugin:\n"
    "  standby diff night.jsonl --config try.json               as the trace has it, and with try.json\n"
    "  standby diff night.jsonl --config a.json --config b.json\n"
    "  standby diff night.jsonl --plugin OTHER.so               the plugin built with this program, and another\n"
    "  standby diff night.jsonl night.record                    whether a trace still plays as it was recorded\n"
    "Exit status: 0 the same, 1 different, 2 trouble.\n";

constexpr int kSame = 0;
constexpr int kDifferent = 1;
constexpr int kTrouble = 2;

/// A file that nobody else sees and that is gone with the program: the way of a record from the player to the
/// comparison, which need not fit into memory.
class ScratchFile {
public:
    ScratchFile() {
        const char* folder = std::getenv("TMPDIR");
        std::string name = std::string(folder != nullptr && *folder != '\0' ? folder : "/tmp") + "/standby-XXXXXX";
        const int opened = ::mkstemp(name.data());
        if (opened < 0) {
            throw Replay::RunError("cannot make a temporary file " + name + ": " + std::strerror(errno));
        }
        stream_.open(name, std::ios::in | std::ios::out | std::ios::binary);
        ::unlink(name.c_str());
        ::close(opened);
        Check();
    }

    [[nodiscard]] std::iostream& Stream() { return stream_; }

    /// What was written is read from its beginning. Throws RunError when not all of it could be written.
    void Rewind() {
        stream_.flush();
        Check();
        stream_.seekg(0);
    }

private:
    void Check() const {
        if (!stream_) {
            throw Replay::RunError("cannot write a temporary file; is its folder full?");
        }
    }

    std::fstream stream_;
};

/// Hands all that happens to two sinks.
class BothSinks : public Replay::RecordSink {
public:
    BothSinks(RecordSink& one, RecordSink& other) : sinks_{&one, &other} {}

    [[nodiscard]] LogLevel LeastLog() const noexcept override {
        return std::min(sinks_[0]->LeastLog(), sinks_[1]->LeastLog());
    }
    [[nodiscard]] bool WantsReasons() const noexcept override {
        return sinks_[0]->WantsReasons() || sinks_[1]->WantsReasons();
    }
    void OnBegin(const Replay::Trace& trace) override {
        Each([&](RecordSink& sink) { sink.OnBegin(trace); });
    }
    void OnStep(const Replay::Step& step) override {
        Each([&](RecordSink& sink) { sink.OnStep(step); });
    }
    void OnLog(int64_t t, const LogLine& line) override {
        Each([&](RecordSink& sink) {
            if (line.level >= sink.LeastLog()) {
                sink.OnLog(t, line);
            }
        });
    }
    void OnCall(int64_t t, std::string_view operation, const ordered_json& arguments,
                const ordered_json& result) override {
        Each([&](RecordSink& sink) { sink.OnCall(t, operation, arguments, result); });
    }
    void OnDeliver(int64_t t, const DevStandbyMgr::StandbyMessage& message) override {
        Each([&](RecordSink& sink) { sink.OnDeliver(t, message); });
    }
    void OnReason(int64_t t, const DevStandbyMgr::HostReason& reason) override {
        Each([&](RecordSink& sink) {
            if (sink.WantsReasons()) {
                sink.OnReason(t, reason);
            }
        });
    }
    void OnDump(int64_t t, const std::string& text) override {
        Each([&](RecordSink& sink) { sink.OnDump(t, text); });
    }
    void OnEnd(int64_t t, const Replay::Summary& summary) override {
        Each([&](RecordSink& sink) { sink.OnEnd(t, summary); });
    }

private:
    template <class Call>
    void Each(const Call& call) {
        for (RecordSink* sink : sinks_) {
            call(*sink);
        }
    }

    std::array<RecordSink*, 2> sinks_;
};

/// One of the two, as it is told apart from the other: a record that was read or a run that was played.
struct Told {
    std::string name;
    std::istream* record = nullptr;
    const Story::Night* night = nullptr;
};

/// A run with its record and its night.
class PlayedRun {
public:
    PlayedRun(const Side& side, const std::function<void(double)>& progress) {
        Replay::JsonlWriter writer(record_.Stream());
        BothSinks sinks(writer, reader_);
        Replay::Play(side.trace, {side.plugin, progress}, sinks);
        record_.Rewind();
    }

    [[nodiscard]] Told Tell(const std::string& name) { return {name, &record_.Stream(), &reader_.Result()}; }

private:
    ScratchFile record_;
    Story::NightReader reader_;
};

bool IsRecord(Input& input) {
    constexpr char kExpected[] = "a trace, or a record as standby replay --format jsonl writes it";
    const std::string_view line = input.FirstLine();
    if (line.empty()) {
        Refuse(input.Name(), "is empty", kExpected);
    }
    if (Replay::IsRecordLine(line)) {
        return true;
    }
    // Whether it is a right one the trace's reader finds out; a cut header is a trace as well.
    if (line.find("\"trace\"") == std::string_view::npos) {
        Refuse(input.Name(), "neither a trace nor a record", kExpected);
    }
    return false;
}

/// Everything that the command line names, opened and read as far as it has to be before anything is played.
struct Sources {
    std::deque<Input> inputs;
    std::vector<bool> areRecords;
    std::vector<Side> runs;  ///< those of the traces, in order
};

Sources Open(const SideNames& names, SlipWatch& slips) {
    Sources sources;
    SideNames played{{}, names.configs, names.plugins};
    std::vector<Replay::Trace> traces;
    for (const std::string& name : names.traces) {
        if (name == "-" && name == names.traces.front() && !sources.inputs.empty()) {
            throw InputError("- stands for standard input, which can be read once only");
        }
        Input& input = sources.inputs.emplace_back(name, "a trace or a record");
        sources.areRecords.push_back(IsRecord(input));
        if (!sources.areRecords.back()) {
            played.traces.push_back(name);
            traces.push_back(ReadInput(input));
        }
    }
    if (!traces.empty()) {
        sources.runs = MakeSides(played, traces, slips);
    }
    return sources;
}

/// Throws unless there are two things to hold against each other, and nothing is named in vain.
void Check(const Sources& sources, const SideNames& named) {
    const auto records = static_cast<size_t>(std::count(sources.areRecords.begin(), sources.areRecords.end(), true));
    const bool isRunNamed = !named.configs.empty() || named.plugins.size() > 1;
    if (records + sources.runs.size() < Story::kSides) {
        throw InputError(sources.inputs.front().Name() +
                         " has nothing to be held against; expected a second trace or record, --config or --plugin");
    }
    if (records + sources.runs.size() > Story::kSides || (records == Story::kSides && isRunNamed)) {
        throw InputError("a record is not played; --config and --plugin are for traces, one of each beside a record");
    }
}

int Compare(const DiffOptions& options, Progress& progress, OutputFile& output) {
    SlipWatch slips(/*isStrict=*/false, [&progress](const std::string& line) {
        progress.Erase();
        Complain(line);
    });
    Sources sources = Open(options.names, slips);
    Check(sources, options.names);
    std::deque<PlayedRun> played;
    std::array<Told, Story::kSides> told;
    size_t nextInput = 0;
    for (size_t side = 0; side < Story::kSides; ++side) {
        const bool isRecord = nextInput < sources.areRecords.size() && sources.areRecords[nextInput];
        if (isRecord) {
            Input& input = sources.inputs[nextInput];
            told[side] = {input.Name(), &input.Stream(), nullptr};
        } else {
            const size_t run = played.size();
            const double share = 1.0 / static_cast<double>(sources.runs.size());
            PlayedRun& its = played.emplace_back(sources.runs[run], [&](double fraction) {
                progress.Show("playing", (static_cast<double>(run) + fraction) * share);
            });
            told[side] = its.Tell(sources.runs[run].label);
        }
        ++nextInput;
    }
    progress.Erase();
    if (!sources.runs.empty()) {
        sources.runs.front().trace.timezone.Use();
    }
    // A run is played without reasons, whatever the record beside it has.
    const bool haveReasons = sources.runs.empty();
    Replay::RecordReader a(*told[0].record, told[0].name, haveReasons);
    Replay::RecordReader b(*told[1].record, told[1].name, haveReasons);
    const Story::Comparison comparison{
        {told[0].name, told[1].name}, Story::CompareRecords(a, b), {told[0].night, told[1].night}};
    if (options.format == AnswerFormat::JSON) {
        output.Stream() << Story::ToJson(comparison).dump(2, ' ', false, ordered_json::error_handler_t::replace)
                        << '\n';
    } else {
        Story::Tell(comparison, output.Stream());
    }
    if (output.Finish() != kDone) {
        return kTrouble;
    }
    return comparison.record.parting ? kDifferent : kSame;
}

int RunDiff(const DiffOptions& options, OutputFile& output) {
    Progress progress(!options.isProgressHidden);
    try {
        return Compare(options, progress, output);
    } catch (const std::exception& error) {
        progress.Erase();
        Complain(FailureOf(error).text);
        return kTrouble;
    }
}

/// One trace is held against itself: what is named once for it goes to the second side.
DiffOptions WithBothSides(DiffOptions options) {
    auto& [traces, configs, plugins] = options.names;
    if (traces.size() == 1 && configs.size() == 1) {
        configs.insert(configs.begin(), "");
    }
    if (plugins.empty() || (traces.size() == 1 && plugins.size() == 1)) {
        plugins.insert(plugins.begin(), DefaultPlugin());
    }
    return options;
}

}  // namespace

void AddDiff(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<DiffOptions>();
    DiffOptions& options = *shared;
    CLI::App& command = *app.add_subcommand("diff", "Hold two runs against each other; tell where they part");
    command.footer(kDiffFooter);
    const auto add = [&](const char* name, const char* about) {
        const auto keep = [&options](const std::string& file) { options.names.traces.push_back(file); };
        return command.add_option_function<std::string>(name, keep, about)->type_name("");
    };
    add("A", "A record or a trace, - for standard input")->required();
    add("B", "What it is held against");
    AddAnswerFormat(command, options.format);
    AddSideOptions(command, options.names, options.isProgressHidden);
    command.callback([shared, &action] {
        action = [options = WithBothSides(*shared)](OutputFile& output) { return RunDiff(options, output); };
    });
}

}  // namespace TARN::Cli
