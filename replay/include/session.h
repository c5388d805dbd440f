#ifndef REPLAY_SESSION_H
#define REPLAY_SESSION_H

#include <cstdint>
#include <memory>
#include <optional>
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

/// The session of this process.
struct Running {
    const char* trace;     ///< its name
    const char* side;      ///< what tells it from another of the same trace; empty: nothing has to
    int64_t sinceStartMs;  ///< how much of the trace's time is over
};

/// What is being played just now; nothing between sessions. For a handler of a crash, which may ask at any instant.
[[nodiscard]] std::optional<Running> WhatRuns() noexcept;

/// A simulated phone with its service and plugin, moved on by hand: by the steps of a trace, or by a person at a
/// prompt. One at a time in a process. Times are wall clock milliseconds.
class Session {
public:
    /// Installs the phone as the trace's header tells, loads the plugin and starts the service at trace.start. The
    /// trace's steps are not played and the trace is not kept; the sink outlives the session. The phone's files are
    /// below `filesFolder`, those that are there already among them; empty: in memory, none to begin with. Throws
    /// RunError when the plugin does not load, or there is no such folder. `side` tells it from another
    /// session of the same trace.
    Session(const Trace& trace, std::string pluginPath, RecordSink& sink, const std::string& filesFolder = "",
            std::string side = "");
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

    /// Kills the service where it is, be it in the middle of a call that the sink is told of: nothing that it still
    /// does reaches the phone, its files or the sink.
    void Kill();

    /// Starts the service anew on the same phone after Kill; what the old one had in memory is lost. Not from within
    /// the sink.
    void StartAgain();

    /// Runs what is due up to and including `end`, stops the service and tells the sink of the end. The last call.
    void Finish(int64_t end);

    [[nodiscard]] int64_t NowMs() const;
    [[nodiscard]] Simulated::SimulatedPhone& Phone();
    [[nodiscard]] DevStandbyMgr::StandbyServiceImpl& Service();

private:
    struct Parts;

    void CreateService();
    void LoadAndInit();
    void CheckFiles() const;
    void Apply(const SetStep& step);
    void Apply(const MessageStep& step);
    void Apply(const BroadcastStep& step);
    void Apply(const DumpStep& step);
    void Apply(const RestartStep& step);
    void Apply(const FileStep& step);
    void Apply(const HostFactsChange& change);
    void Tell(const HostFactsChange& change);

    /// Makes the session known for as long as anything of it is there.
    class Registration {
    public:
        explicit Registration(const Session& session) noexcept { running_ = &session; }
        ~Registration() { running_ = nullptr; }
        Registration(const Registration&) = delete;
        Registration& operator=(const Registration&) = delete;
    };
    friend std::optional<Running> WhatRuns() noexcept;
    static inline const Session* running_ = nullptr;

    std::string name_;
    std::string side_;
    int64_t start_;
    int64_t sinceStartMs_ = 0;  ///< before the phone is there and after it
    bool isPhoneThere_ = false;
    /// Ends what is there of the phone, also where the session does not come about.
    class PhoneEnd {
    public:
        explicit PhoneEnd(Session& session) noexcept : session_(session) {}
        ~PhoneEnd();
        PhoneEnd(const PhoneEnd&) = delete;
        PhoneEnd& operator=(const PhoneEnd&) = delete;

    private:
        Session& session_;
    };
    Registration registration_{*this};
    std::string pluginPath_;
    RecordSink& sink_;
    std::unique_ptr<Parts> parts_;
    PhoneEnd phoneEnd_{*this};
};

}  // namespace TARN::Replay

#endif  // REPLAY_SESSION_H
