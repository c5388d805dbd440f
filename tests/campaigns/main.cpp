#include <sched.h>

#include <algorithm>
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "campaigns.h"

namespace {

size_t Processors() {
    cpu_set_t set;
    return ::sched_getaffinity(0, sizeof set, &set) == 0 ? static_cast<size_t>(CPU_COUNT(&set)) : 1;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace TARN::Tests;
    CLI::App app("Looks for a fault that the phone is not all there after");
    app.require_subcommand(1);
    app.fallthrough();
    KillOptions options;
    uint64_t first = 0;
    uint64_t every = 1;
    uint64_t cases = 0;
    size_t jobs = Processors();
    app.add_option("--first", first, "The first case");
    app.add_option("--cases", cases, "How many; else as many as fit the campaign");
    app.add_option("--every", every, "One case in so many only")->check(CLI::PositiveNumber);
    app.add_option("--jobs", jobs, "How many processes")->check(CLI::Range(1, 256));
    app.add_option("--seed", options.seed, "What chance follows from");
    app.add_option("--keep", options.folder, "Where nights with findings are written as traces")
        ->check(CLI::ExistingDirectory);

    CLI::App* const kill = app.add_subcommand("kill", "The service is killed anywhere, in made-up nights");
    kill->add_flag("--faults", options.withFaults, "Operations fail for a while, too");
    kill->add_flag("--everything", options.everything, "Not only radios and firewall are looked at in the morning");
    kill->add_option("--config", options.config, "Laid over each night's host")->check(CLI::ExistingFile);
    CLI::App* const write = app.add_subcommand("write", "Processes that write files are killed");
    CLI::App* const fail = app.add_subcommand("fail", "Every operation fails, alone and in pairs");
    bool isAlone = false;
    fail->add_flag("--alone", isAlone, "No pairs");
    CLI11_PARSE(app, argc, argv);
    const auto run = [&](const Campaign& campaign, uint64_t least, uint64_t all) {
        const uint64_t from = std::max(first, least);
        return Run(campaign, {from, cases != 0 ? from + cases : std::max(from, least + all), every}, jobs) ? 0 : 1;
    };
    try {
        if (kill->parsed()) {
            return run(KillAnywhere(options), 1, 1000);
        }
        if (write->parsed()) {
            return run(KillWriters(options.seed), 0, 10);
        }
        return run(FailEverything(BUSY_DAY, options.folder), 0,
                   isAlone ? CasesOfFailing().alone : CasesOfFailing().all);
    } catch (const std::exception& error) {
        std::cerr << "standby_campaigns: " << error.what() << '\n';
        return 2;
    }
}
