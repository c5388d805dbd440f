#ifndef CLI_WORKER_POOL_H
#define CLI_WORKER_POOL_H

#include <sys/types.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "trace_names.h"

namespace TARN::Cli {

/// Work on many traces, each in one of several worker processes, with the results in the order of the traces. Holds
/// what a few traces came to and never all of them. A trace that is wrong, or that a worker does not survive, is one
/// line on standard error; the others go on. What fails for another reason ends it all.
class WorkerPool {
public:
    /// A line for standard error that is no complaint about the whole trace. It stands before what is left of the
    /// result.
    using Note = std::function<void(const std::string& line)>;

    /// What a worker does with a trace: writes its result. Throws InputError or RunError.
    using Work = std::function<void(const std::string& name, std::ostream& result, const Note& note)>;

    /// Called with the result of each trace, piece by piece and in order. `isFirst` begins a result; a trace without
    /// one is passed over. Returns whether anybody wants more.
    using Take = std::function<bool(const std::string& name, std::string_view piece, bool isFirst)>;

    /// Called when a trace is done, well or not, with how many are and how many are known of.
    using Watch = std::function<void(size_t done, size_t known)>;

    WorkerPool(size_t workers, Work work, Take take, Watch watch);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// Works through all traces. Returns the exit status: that of the worst of them. Throws RunError when no worker can
    /// be started.
    [[nodiscard]] int Run(TraceNames& names);

private:
    struct Task {
        std::string name;
        std::string held;                ///< of its result: what could not be handed on yet
        std::vector<std::string> notes;  ///< likewise
        bool hasBegun = false;
        bool isDone = false;
        bool hasCrashed = false;
        int status = 0;
        std::string complaint;
    };

    struct Worker;

    void Start(Worker& worker);
    [[noreturn]] void Live(int line);
    void GiveOut(TraceNames& names);
    bool HandOn();
    void Hear();
    void Read(Worker& worker);
    void Bury(Worker& worker);
    [[nodiscard]] bool IsHeard(const Worker& worker) const;

    Work work_;
    Take take_;
    Watch watch_;
    std::vector<std::unique_ptr<Worker>> workers_;
    std::deque<std::shared_ptr<Task>> tasks_;  ///< begun and not handed on, in order
    bool isOver_ = false;                      ///< no further names
    size_t done_ = 0;
    int status_ = 0;
};

/// As many workers as there are processors for this process.
[[nodiscard]] size_t Processors() noexcept;

}  // namespace TARN::Cli

#endif  // CLI_WORKER_POOL_H
