#include "result_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "player.h"

namespace TARN::Cli {

namespace fs = std::filesystem;

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
}

}  // namespace TARN::Cli
