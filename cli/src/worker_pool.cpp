#include "worker_pool.h"

#include <poll.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <streambuf>
#include <utility>

#include "exit_status.h"
#include "json_fields.h"
#include "player.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;
using Replay::RunError;

/// Of a trace that is not first in line, so much of the result is taken from its worker, which then waits.
constexpr size_t kMostHeldBytes = size_t{4} * 1024 * 1024;
/// So many traces for each worker may be ahead of the first in line.
constexpr size_t kMostAhead = 16;
constexpr size_t kPieceBytes = size_t{64} * 1024;

/// What a worker says: a kind, a number, and bytes that follow. Of a piece and a note the number is 0, of the end it is
/// the exit status and the bytes are the complaint.
struct Head {
    enum Kind : uint32_t { PIECE, NOTE, END };
    Kind kind;
    int32_t status;
    uint32_t bytes;
};

/// Writes all to a socket. False when nobody reads any more.
bool WriteAll(int file, const void* from, size_t bytes) {
    const char* next = static_cast<const char*>(from);
    while (bytes > 0) {
        const ssize_t written = ::send(file, next, bytes, MSG_NOSIGNAL);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        next += written;
        bytes -= static_cast<size_t>(written);
    }
    return true;
}

bool Say(int file, Head::Kind kind, int status, std::string_view bytes) {
    const Head head{kind, status, static_cast<uint32_t>(bytes.size())};
    return WriteAll(file, &head, sizeof(head)) && WriteAll(file, bytes.data(), bytes.size());
}

/// A worker's result on its way.
class PieceBuffer : public std::streambuf {
public:
    explicit PieceBuffer(int file) : file_(file), buffer_(kPieceBytes) { Discard(); }

    /// Forgets what was not sent yet.
    void Discard() { setp(buffer_.data(), buffer_.data() + buffer_.size()); }

private:
    int_type overflow(int_type next) override {
        if (sync() != 0) {
            return traits_type::eof();
        }
        if (!traits_type::eq_int_type(next, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(next);
            pbump(1);
        }
        return traits_type::not_eof(next);
    }
    int sync() override {
        const std::string_view piece(pbase(), static_cast<size_t>(pptr() - pbase()));
        Discard();
        return piece.empty() || Say(file_, Head::PIECE, 0, piece) ? 0 : -1;
    }

    int file_;
    std::vector<char> buffer_;
};

/// The name of a trace. Nothing when there is no further task.
std::optional<std::string> ReadName(int file) {
    uint32_t bytes = 0;
    const auto read = [file](void* to, size_t size) {
        for (size_t done = 0; done < size;) {
            const ssize_t got = ::read(file, static_cast<char*>(to) + done, size - done);
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got <= 0) {
                return false;
            }
            done += static_cast<size_t>(got);
        }
        return true;
    };
    if (!read(&bytes, sizeof(bytes))) {
        return std::nullopt;
    }
    std::string name(bytes, '\0');
    return read(name.data(), bytes) ? std::optional(std::move(name)) : std::nullopt;
}

}  // namespace

struct WorkerPool::Worker {
    pid_t process = -1;
    int line = -1;     ///< a socket: its tasks go there, its results come from there
    std::string read;  ///< of the results: what is no whole message yet
    std::shared_ptr<Task> task;

    [[nodiscard]] bool IsAlive() const noexcept { return process >= 0; }

    void Close() { ::close(std::exchange(line, -1)); }
};

WorkerPool::WorkerPool(size_t workers, Work work, Take take, Watch watch)
    : work_(std::move(work)), take_(std::move(take)), watch_(std::move(watch)) {
    for (size_t i = 0; i < std::max<size_t>(workers, 1); ++i) {
        workers_.push_back(std::make_unique<Worker>());
    }
}

WorkerPool::~WorkerPool() {
    for (const auto& worker : workers_) {
        if (worker->IsAlive()) {
            if (worker->task) {
                ::kill(worker->process, SIGKILL);  // nobody waits for what it is busy with
            }
            worker->Close();
            ::waitpid(worker->process, nullptr, 0);
        }
    }
}

int WorkerPool::Run(TraceNames& names) {
    bool isWanted = true;
    while (isWanted) {
        GiveOut(names);
        isWanted = HandOn();
        if (tasks_.empty() && isOver_) {
            break;
        }
        if (isWanted && !tasks_.empty()) {
            Hear();
        }
    }
    return status_;
}

void WorkerPool::GiveOut(TraceNames& names) {
    for (const auto& worker : workers_) {
        while (!isOver_ && !worker->task && tasks_.size() < workers_.size() * kMostAhead) {
            std::optional<std::string> name;
            try {
                name = names.Next();
            } catch (const InputError& error) {
                Complain(error.what());
                status_ = std::max(status_, kInputWrong);
                continue;
            }
            if (!name) {
                isOver_ = true;
                break;
            }
            worker->task = tasks_.emplace_back(std::make_shared<Task>());
            worker->task->name = *name;
            if (!worker->IsAlive()) {
                Start(*worker);
            }
            const auto bytes = static_cast<uint32_t>(name->size());
            // that the worker is gone shows when it is heard
            (void)(WriteAll(worker->line, &bytes, sizeof(bytes)) && WriteAll(worker->line, name->data(), bytes));
        }
    }
    if (watch_) {
        watch_(done_, done_ + tasks_.size() + names.Waiting());
    }
}

bool WorkerPool::HandOn() {
    while (!tasks_.empty()) {
        Task& first = *tasks_.front();
        for (const std::string& note : std::exchange(first.notes, {})) {
            Complain(note);
        }
        if (!first.held.empty()) {
            const std::string piece = std::exchange(first.held, {});
            if (!take_(first.name, piece, !std::exchange(first.hasBegun, true))) {
                return false;
            }
        }
        if (!first.isDone) {
            break;
        }
        if (!first.complaint.empty()) {
            Complain(first.complaint);
        }
        // What neither the trace nor a crash is to blame for, such as a plugin that does not load, meets all others
        // too.
        const bool isHopeless = first.status == kRunFailed && !first.hasCrashed;
        status_ = std::max(status_, first.status);
        ++done_;
        tasks_.pop_front();
        if (isHopeless) {
            return false;
        }
    }
    return true;
}

bool WorkerPool::IsHeard(const Worker& worker) const {
    return worker.task && (worker.task == tasks_.front() || worker.task->held.size() < kMostHeldBytes);
}

void WorkerPool::Hear() {
    std::vector<pollfd> files;
    std::vector<Worker*> heard;
    for (const auto& worker : workers_) {
        if (IsHeard(*worker)) {
            files.push_back({worker->line, POLLIN, 0});
            heard.push_back(worker.get());
        }
    }
    if (::poll(files.data(), files.size(), -1) < 0) {
        return;  // interrupted: the next round asks again
    }
    for (size_t i = 0; i < files.size(); ++i) {
        if (files[i].revents != 0) {
            Read(*heard[i]);
        }
    }
}

void WorkerPool::Read(Worker& worker) {
    std::array<char, kPieceBytes> piece;
    const ssize_t got = ::read(worker.line, piece.data(), piece.size());
    if (got < 0 && errno == EINTR) {
        return;
    }
    if (got <= 0) {
        Bury(worker);
        return;
    }
    worker.read.append(piece.data(), static_cast<size_t>(got));
    size_t next = 0;
    Head head{};
    while (worker.task && worker.read.size() - next >= sizeof(head)) {
        std::memcpy(&head, worker.read.data() + next, sizeof(head));
        if (worker.read.size() - next - sizeof(head) < head.bytes) {
            break;
        }
        const std::string_view bytes(worker.read.data() + next + sizeof(head), head.bytes);
        next += sizeof(head) + head.bytes;
        if (head.kind == Head::PIECE) {
            worker.task->held.append(bytes);
        } else if (head.kind == Head::NOTE) {
            worker.task->notes.emplace_back(bytes);
        } else {
            worker.task->status = head.status;
            worker.task->complaint = bytes;
            worker.task->isDone = true;
            worker.task.reset();
        }
    }
    worker.read.erase(0, next);
}

/// A worker has gone without a word. What it was busy with is lost; the next task gets a new one.
void WorkerPool::Bury(Worker& worker) {
    int how = 0;
    ::waitpid(worker.process, &how, 0);
    worker.Close();
    worker.process = -1;
    worker.read.clear();
    const std::string why = WIFSIGNALED(how) ? ::strsignal(WTERMSIG(how)) : "it ended too early";
    worker.task->complaint = worker.task->name + ": the run failed: " + why;
    worker.task->status = kRunFailed;
    worker.task->hasCrashed = true;
    worker.task->isDone = true;
    worker.task.reset();
}

void WorkerPool::Start(Worker& worker) {
    std::array<int, 2> line{};
    const auto fail = [] { throw RunError(std::string("cannot start a worker: ") + std::strerror(errno)); };
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, line.data()) != 0) {
        fail();
    }
    const pid_t parent = ::getpid();
    const pid_t process = ::fork();
    if (process < 0) {
        fail();
    }
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) {
            ::_exit(kRunFailed);
        }
        ::close(line[0]);
        for (const auto& other : workers_) {
            if (other->IsAlive()) {
                other->Close();
            }
        }
        Live(line[1]);
    }
    ::close(line[1]);
    worker.process = process;
    worker.line = line[0];
}

void WorkerPool::Live(int line) {
    while (const auto name = ReadName(line)) {
        PieceBuffer buffer(line);
        std::ostream stream(&buffer);
        Failure failure{kDone, {}};
        try {
            work_(*name, stream, [line](const std::string& note) { (void)Say(line, Head::NOTE, 0, note); });
        } catch (const std::exception& error) {
            failure = FailureOf(error);
            if (failure.status == kRunFailed) {
                buffer.Discard();
            }
        }
        stream.flush();
        if (!stream || !Say(line, Head::END, failure.status, failure.text)) {
            break;
        }
    }
    ::_exit(kDone);
}

size_t Processors() noexcept {
    cpu_set_t set;
    return ::sched_getaffinity(0, sizeof(set), &set) == 0 ? static_cast<size_t>(CPU_COUNT(&set)) : 1;
}

}  // namespace TARN::Cli
