#include "generate_command.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <memory>

#include "exit_status.h"
#include "generator.h"
#include "json_fields.h"
#include "player.h"
#include "progress.h"
#include "result_file.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;

constexpr int64_t kMostNights = 1'000'000'000;

struct GenerateOptions {
    Authoring::Generation generation;
    uint64_t nights = 1;
    uint64_t first = 1;
    std::string folder;  ///< empty: standard output
    bool isProgressHidden = false;
};

constexpr char kGenerateFooter[] =
    "The same seed gives the same bytes on every machine, and a night is the same whichever others are made\n"
    "with it: --first 1001 --nights 1000 makes the second thousand. docs/generate.md tells the model.\n"
    "Examples:\n"
    "  standby generate --seed 7 | standby replay -\n"
    "  standby generate --seed 7 --nights 10000 --folder nights\n"
    "  standby generate --seed 7 --nights 1000 --first $((SLURM_ARRAY_TASK_ID * 1000 + 1)) --folder nights\n";

/// night-00001.jsonl
std::string FileName(uint64_t number) {
    std::array<char, 64> name{};
    std::snprintf(name.data(), name.size(), "night-%05llu.jsonl", static_cast<unsigned long long>(number));
    return name.data();
}

void MakeFolder(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw Replay::RunError(folder + " cannot be made: " + error.message());
    }
}

int RunGenerate(const GenerateOptions& options, OutputFile& output) {
    Authoring::Generator generator(options.generation);
    if (options.folder.empty()) {
        generator.Write(options.first, output.Stream());
        return output.Finish();
    }
    MakeFolder(options.folder);
    Progress progress(!options.isProgressHidden);
    for (uint64_t i = 0; i < options.nights; ++i) {
        progress.Show("writing", static_cast<double>(i) / static_cast<double>(options.nights));
        ResultFile file(options.folder + "/" + FileName(options.first + i));
        generator.Write(options.first + i, file.Stream());
        file.Finish();
    }
    progress.Erase();
    return kDone;
}

}  // namespace

void AddGenerate(CLI::App& app, Action& action) {
    const auto shared = std::make_shared<GenerateOptions>();
    GenerateOptions& options = *shared;
    CLI::App& command = *app.add_subcommand("generate", "Write made-up but plausible nights, as traces");
    command.footer(kGenerateFooter);
    const auto addNumber = [&command](const char* name, uint64_t& target, const char* placeholder, const char* about,
                                      int64_t least, int64_t most) {
        command
            .add_option_function<int64_t>(
                name, [&target](const int64_t& number) { target = static_cast<uint64_t>(number); }, about)
            ->type_name(placeholder)
            ->check(CLI::Range(least, most).description(""));
    };
    addNumber("--seed", options.generation.seed, "N", "What the nights follow from; else 1", 0,
              std::numeric_limits<int64_t>::max());
    addNumber("--nights", options.nights, "M", "How many; else 1", 1, kMostNights);
    addNumber("--first", options.first, "K", "The number of the first one; else 1", 1, kMostNights);
    addNumber("--people", options.generation.people, "P", "How many people take turns, a night each; else 100", 1,
              kMostNights);
    command
        .add_option("--from", options.generation.firstDate, "The date of everybody's first evening; else 2026-01-05")
        ->type_name("DATE");
    command.add_option("--timezone", options.generation.timezone, "Where they live; else Europe/Berlin")
        ->type_name("ZONE");
    command.add_option("--folder", options.folder, "Where the nights go, a file each; else one to standard output")
        ->type_name("DIR");
    command.add_flag("--no-progress", options.isProgressHidden, "Show no progress on the terminal");
    command.callback([shared, &action] {
        if (shared->nights > 1 && shared->folder.empty()) {
            throw CLI::ValidationError("--nights", "several nights need --folder");
        }
        action = [shared](OutputFile& output) { return RunGenerate(*shared, output); };
    });
}

}  // namespace TARN::Cli
