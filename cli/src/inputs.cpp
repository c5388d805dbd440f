#include "inputs.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <new>
#include <system_error>

#include "json_fields.h"
#include "output_file.h"
#include "standby_config.h"
#include "trace_reader.h"

namespace TARN::Cli {

namespace {

using DevStandbyMgr::InputError;
using DevStandbyMgr::Refuse;

constexpr char kStandardInput[] = "-";
constexpr size_t kPieceBytes = size_t{64} * 1024;
constexpr size_t kMostLookedAt = size_t{1024} * 1024;
/// Traces of more steps are read a second time instead of kept.
constexpr size_t kMostKept = 4096;

}  // namespace

Input::Input(const std::string& name, const std::string& expected) : name_(name), stream_(this) {
    if (name == kStandardInput) {
        name_ = "standard input";
        RequireStandardInput();
        file_.reset(::gzdopen(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0), "rb"));
    } else {
        if (std::error_code error; std::filesystem::is_directory(name, error)) {
            Refuse(name, "is a directory", expected);
        }
        errno = 0;
        file_.reset(::gzopen(name.c_str(), "rbe"));
    }
    if (file_ == nullptr) {
        Refuse(name_, errno != 0 ? std::strerror(errno) : "cannot be opened", expected);
    }
    ::gzbuffer(file_.get(), kPieceBytes);
}

Input::~Input() = default;

bool Input::ReadMore() {
    const size_t held = held_.size();
    held_.resize(held + kPieceBytes);
    const int read = ::gzread(file_.get(), held_.data() + held, kPieceBytes);
    held_.resize(held + static_cast<size_t>(std::max(read, 0)));
    setg(held_.data(), held_.data(), held_.data() + held_.size());
    return read > 0;
}

void Input::Check() const {
    int error = Z_OK;
    const char* text = ::gzerror(file_.get(), &error);
    if (error == Z_ERRNO) {
        Refuse(name_, std::strerror(errno), "a file that can be read");
    }
    if (error != Z_OK && error != Z_STREAM_END) {
        Refuse(name_, "damaged: " + std::string(error == Z_BUF_ERROR ? "it ends too early" : text),
               "a whole gzip archive");
    }
}

Input::int_type Input::underflow() {
    held_.clear();
    return ReadMore() ? traits_type::to_int_type(*gptr()) : traits_type::eof();
}

bool Input::Rewind() {
    held_.clear();
    setg(nullptr, nullptr, nullptr);
    stream_.clear();
    return ::gzrewind(file_.get()) == 0;
}

std::string_view Input::FirstLine() {
    for (size_t begin = 0;;) {
        size_t end = held_.find('\n', begin);
        const bool isWhole = end != std::string::npos;
        if (!isWhole && held_.size() < kMostLookedAt && ReadMore()) {
            continue;
        }
        end = isWhole ? end : held_.size();
        const std::string_view line = std::string_view(held_).substr(begin, end - begin);
        const size_t text = line.find_first_not_of(" \t\r");
        if (!isWhole || (text != std::string_view::npos && line[text] != '#')) {
            return line;
        }
        begin = end + 1;
    }
}

namespace {

/// What `read` does with an input; its errors in the input's name, and what was cut off on the way is not the trace's
/// fault.
template <class Read>
auto InInput(Input& input, const Read& read) {
    try {
        return read();
    } catch (const InputError&) {
        input.Check();
        throw;
    } catch (const std::bad_alloc&) {
        Refuse(input.Name(), "out of memory", "a trace that it has room for");
    }
}

}  // namespace

PlayableTrace::PlayableTrace(const std::string& name, const Begin& begin, const Look& look)
    : input_(std::make_unique<Input>(name, "a trace")) {
    InInput(*input_, [&] {
        const bool canRewind = input_->Rewind();
        Replay::TraceReader reader(input_->Stream(), input_->Name());
        begin(reader.Head());
        std::vector<Replay::Step> kept;
        for (auto steps = reader.Next(); !steps.empty(); steps = reader.Next()) {
            ++lines_;
            std::for_each(steps.begin(), steps.end(), look);
            if (canRewind && kept.size() > kMostKept) {
                isWhole_ = false;
                kept.clear();
            } else if (isWhole_) {
                std::ranges::move(steps, std::back_inserter(kept));
            }
        }
        input_->Check();
        head_ = reader.Head();
        head_.steps = std::move(kept);
    });
    if (isWhole_) {
        input_.reset();
    }
}

void PlayableTrace::Play(const Replay::PlayOptions& options, Replay::RecordSink& sink) {
    constexpr char kExpected[] = "a file that stays as it is";
    if (isWhole_) {
        Replay::Play(head_, options, sink);
        return;
    }
    std::optional<Replay::TraceReader> reader;
    InInput(*input_, [&] {
        if (!input_->Rewind()) {
            Refuse(input_->Name(), "cannot be read a second time", kExpected);
        }
        reader.emplace(input_->Stream(), input_->Name());
    });
    size_t left = lines_;
    const auto next = [&]() -> std::span<const Replay::Step> {
        if (left == 0) {
            return {};
        }
        --left;
        const std::span<const Replay::Step> steps = reader->Next();
        if (steps.empty()) {
            Refuse(input_->Name(), "ends before it did when it was checked", kExpected);
        }
        return steps;
    };
    Replay::Play(
        head_, [&] { return InInput(*input_, next); }, options, sink);
}

Replay::Trace ReadInput(Input& input, Replay::TraceLines* lines) {
    return InInput(input, [&] {
        Replay::Trace trace = Replay::ReadTrace(input.Stream(), input.Name(), lines);
        input.Check();
        return trace;
    });
}

Replay::Trace ReadInput(const std::string& name) {
    Input input(name, "a trace");
    return ReadInput(input);
}

Replay::Trace ReadInput(const std::string& name, const std::string& config) {
    Replay::Trace trace = ReadInput(name);
    if (!config.empty()) {
        DevStandbyMgr::StandbyConfigFile(config).LayOver(trace.host);
    }
    return trace;
}

}  // namespace TARN::Cli
