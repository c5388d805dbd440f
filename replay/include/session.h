#ifndef REPLAY_SESSION_H
#define REPLAY_SESSION_H

#include <cstdint>
#include <memory>
#include <string>

#include "record_sink.h"
#include "trace.h"

namespace TARN::DevStandbyMgr {
class StandbyServiceImpl;
}
namespace TARN::Simulated {
class SimulatedPhone;
}

namespace TARN::Replay {

/// A simulated phone with its service and plugin, moved on by hand: by the steps of a trace, or by a person at a
/// prompt. One at a time in a process. Times are wall clock milliseconds.
class Session {
public:
    /// Installs the phone as the trace's header tells, loads the plugin and starts the service at trace.start. The
    /// trace's steps are not played and the trace is not kept; the sink outlives the session. The phone's files are
    /// below `filesFolder`, those that are there already among them; empty: in memory, none to begin with. Throws
    /// RunError when the plugin does not load, or there is no such folder.
    Session(const Trace& trace, std::string pluginPath, RecordSink& sink, const std::string& filesFolder = "");
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Runs what is due before `t`, and only that; then it is `t`. This and what follows throws RunError when the
    /// phone's files could not be written below their folder.
    void AdvanceTo(int64_t t);

    /// Runs what is due up to and including `t`.
    void RunThrough(int64_t t);

    /// Goes to the step's time, which is not before now, and does it. What it queues has not run yet.
    void Do(const Step& step);

    /// Runs what is due up to and including `end`, stops the service and tells the sink of the end. The last call.
    void Finish(int64_t end);

    [[nodiscard]] int64_t NowMs() const;
    [[nodiscard]] Simulated::SimulatedPhone& Phone();
    [[nodiscard]] DevStandbyMgr::StandbyServiceImpl& Service();

private:
    struct Parts;

    void LoadAndInit();
    void CheckFiles() const;
    void Apply(const SetStep& step);
    void Apply(const MessageStep& step);
    void Apply(const BroadcastStep& step);
    void Apply(const DumpStep& step);
    void Apply(const RestartStep& step);
    void Apply(const FileStep& step);
    void Apply(const HostFactsChange& change);

    int64_t start_;
    std::string pluginPath_;
    RecordSink& sink_;
    std::unique_ptr<Parts> parts_;
};

}  // namespace TARN::Replay

#endif  // REPLAY_SESSION_H
