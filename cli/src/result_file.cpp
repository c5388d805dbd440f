#include "result_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "player.h"

namespace TARN::Cli {

namespace fs = std::filesystem;

namespace {

constexpr std::array kEndings = {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGQUIT, SIGXCPU, SIGXFSZ};

std::array<struct sigaction, kEndings.size()> before;
std::array<char, PATH_MAX> unfinished{};  ///< empty: none is being written

void RemoveAndEnd(int signal) {
    RemoveUnfinished();
    ::raise(signal);
}

}  // namespace

void RemoveUnfinished() noexcept {
    if (unfinished.front() != '\0') {
        ::unlink(unfinished.data());
    }
}

UnfinishedFile::UnfinishedFile(const std::string& path) {
    if (path.size() >= unfinished.size()) {
        return;  // nor can it be opened
    }
    path.copy(unfinished.data(), path.size());
    unfinished[path.size()] = '\0';
    struct sigaction action {};
    action.sa_handler = RemoveAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (size_t i = 0; i < kEndings.size(); ++i) {
        ::sigaction(kEndings[i], nullptr, &before[i]);
        if (before[i].sa_handler == SIG_DFL) {
            ::sigaction(kEndings[i], &action, nullptr);
        }
    }
}

UnfinishedFile::~UnfinishedFile() {
    if (unfinished.front() != '\0') {
        for (size_t i = 0; i < kEndings.size(); ++i) {
            ::sigaction(kEndings[i], &before[i], nullptr);
        }
        unfinished.front() = '\0';
    }
}

ResultFile::ResultFile(const std::string& name) : name_(name), target_(name == "-" ? "/dev/stdout" : name) {
    constexpr mode_t kAsAnyFile = 0666;
    std::error_code error;
    const fs::file_status status = fs::status(target_, error);
    if (fs::is_directory(status)) {
        Fail(EISDIR);
    }
    if (fs::is_regular_file(status)) {
        target_ = fs::canonical(target_, error);  // a link stays one
    }
    errno = 0;
    if (!fs::exists(status) || fs::is_regular_file(status)) {
        std::string beside = target_ + ".part-" + std::to_string(::getpid());
        unfinished_.emplace(beside);
        const int file = ::open(beside.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kAsAnyFile);
        if (file < 0) {
            Fail(errno);
        }
        ::close(file);
        beside_ = std::move(beside);
    }
    stream_.open(beside_.empty() ? target_ : beside_, std::ios::binary);
    if (!stream_) {
        Fail(errno);
    }
}

ResultFile::~ResultFile() {
    if (!beside_.empty()) {
        ::unlink(beside_.c_str());
    }
}

void ResultFile::Fail(int error) const {
    throw Replay::RunError(name_ + " cannot be written: " + std::strerror(error));
}

void ResultFile::Finish() {
    stream_.close();
    if (!stream_ || (!beside_.empty() && std::rename(beside_.c_str(), target_.c_str()) != 0)) {
        Fail(errno);
    }
    beside_.clear();
    unfinished_.reset();
}

}  // namespace TARN::Cli
