#include "campaign.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <stdexcept>

namespace TARN::Tests {

namespace {

constexpr unsigned kMostSeconds = 60;

/// One write, so that the lines of several processes do not mix.
void Print(const std::string& line) {
    static_cast<void>(::write(STDOUT_FILENO, (line + "\n").data(), line.size() + 1) < 0);
}

double Seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

void Report::Find(const std::string& name, const std::string& what) {
    ++findings_;
    Print(name + ": " + what);
}

/// The processes of a campaign.
class Workers {
public:
    Workers(const Campaign& campaign, const Range& cases, size_t jobs)
        : campaign_(campaign), cases_(cases), pids_(jobs) {
        void* const shared =
            ::mmap(nullptr, jobs * sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (shared == MAP_FAILED) {
            throw std::runtime_error(std::string("no memory to share: ") + std::strerror(errno));
        }
        reports_ = static_cast<Report*>(shared);
        for (size_t job = 0; job < jobs; ++job) {
            new (reports_ + job) Report;
        }
    }
    ~Workers() { ::munmap(static_cast<void*>(reports_), pids_.size() * sizeof(Report)); }
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    void Run() {
        for (size_t job = 0; job < pids_.size(); ++job) {
            Start(job, cases_.first + job * cases_.every);
        }
        for (size_t job = 0; job < pids_.size(); ++job) {
            while (!Wait(job)) {
                Start(job, reports_[job].current_ + pids_.size() * cases_.every);
            }
        }
    }

    [[nodiscard]] uint64_t Findings() const {
        return Sum([](const Report& report) -> uint64_t { return report.findings_; });
    }
    [[nodiscard]] uint64_t Figure(size_t figure) const {
        return Sum([figure](const Report& report) -> uint64_t { return report.figures_[figure]; });
    }

private:
    template <class Of>
    [[nodiscard]] uint64_t Sum(const Of& of) const {
        uint64_t sum = 0;
        for (size_t job = 0; job < pids_.size(); ++job) {
            sum += of(reports_[job]);
        }
        return sum;
    }

    void Start(size_t job, uint64_t first) {
        pids_[job] = ::fork();
        if (pids_[job] < 0) {
            throw std::runtime_error(std::string("cannot start a worker: ") + std::strerror(errno));
        }
        if (pids_[job] == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            Live(reports_[job], first);
        }
    }

    [[noreturn]] void Live(Report& report, uint64_t first) {
        for (uint64_t number = first; number < cases_.end; number += pids_.size() * cases_.every) {
            report.current_ = number;
            ::alarm(kMostSeconds);
            try {
                campaign_.play(number, report);
            } catch (const std::exception& error) {
                report.Find(campaign_.name(number), error.what());
            }
        }
        ::_exit(0);
    }

    /// Whether the worker came to its end.
    bool Wait(size_t job) {
        int how = 0;
        ::waitpid(pids_[job], &how, 0);
        if (!WIFSIGNALED(how)) {
            return true;
        }
        const int signal = WTERMSIG(how);
        reports_[job].Find(campaign_.name(reports_[job].current_), signal == SIGALRM
                                                                       ? "does not come to its end"
                                                                       : std::string("dies: ") + ::strsignal(signal));
        return false;
    }

    const Campaign& campaign_;
    Range cases_;
    std::vector<pid_t> pids_;
    Report* reports_ = nullptr;
};

bool Run(const Campaign& campaign, const Range& cases, size_t jobs) {
    const double start = Seconds();
    Workers workers(campaign, cases, jobs);
    workers.Run();
    std::string line = std::to_string((cases.end - cases.first + cases.every - 1) / cases.every) + " " + campaign.unit;
    for (size_t figure = 0; figure < campaign.figures.size(); ++figure) {
        line += ", " + std::to_string(workers.Figure(figure)) + " " + campaign.figures[figure];
    }
    Print(line + ": " + std::to_string(workers.Findings()) + " findings in " +
          std::to_string(static_cast<int64_t>(Seconds() - start + 0.5)) + " s");
    return workers.Findings() == 0;
}

const char* CampaignPlugin() {
    return PLUGIN_PATH;
}

}  // namespace TARN::Tests
