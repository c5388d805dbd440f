#include "output_file.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

#include "exit_status.h"
#include "json_fields.h"

namespace TARN::Cli {

namespace {
constexpr size_t kPieceBytes = size_t{256} * 1024;
}

void KeepStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) == -1) {
            // The lowest free number is this one. Input that cannot be read and output that cannot be written stay so.
            [[maybe_unused]] const int taken = ::open("/dev/null", stream == STDOUT_FILENO ? O_RDONLY : O_WRONLY);
        }
    }
}

void RequireStandardInput() {
    if ((::fcntl(STDIN_FILENO, F_GETFL) & O_ACCMODE) == O_WRONLY) {
        throw DevStandbyMgr::InputError("standard input is closed; expected something to read there");
    }
}

OutputFile::OutputFile() : buffer_(std::make_unique_for_overwrite<char[]>(kPieceBytes)), stream_(this) {
    Discard();
}

bool OutputFile::IsTerminal() const {
    return ::isatty(STDOUT_FILENO) == 1;
}

size_t OutputFile::Columns() const {
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void OutputFile::Discard() {
    setp(buffer_.get(), buffer_.get() + kPieceBytes);
}

OutputFile::int_type OutputFile::overflow(int_type next) {
    WriteLines();
    if (error_ != 0) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(next, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(next);
        pbump(1);
    }
    return traits_type::not_eof(next);
}

int OutputFile::sync() {
    Write(static_cast<size_t>(pptr() - pbase()));
    return error_ == 0 ? 0 : -1;
}

void OutputFile::WriteLines() {
    const std::string_view held(pbase(), static_cast<size_t>(pptr() - pbase()));
    const size_t end = held.rfind('\n');
    Write(end == std::string_view::npos ? held.size() : end + 1);
}

void OutputFile::Write(size_t bytes) {
    const char* next = pbase();
    const char* const end = next + bytes;
    if (beforeWriting_ && next != end) {
        beforeWriting_();
    }
    while (error_ == 0 && next != end) {
        const ssize_t written = ::write(STDOUT_FILENO, next, static_cast<size_t>(end - next));
        if (written >= 0) {
            next += written;
        } else if (errno != EINTR) {
            error_ = errno;
        }
    }
    const auto left = static_cast<size_t>(pptr() - end);
    std::memmove(buffer_.get(), end, left);
    Discard();
    pbump(static_cast<int>(left));
}

int OutputFile::Finish() {
    stream_.flush();
    if (error_ == 0) {
        return kDone;
    }
    Complain(std::string("cannot write the output: ") + std::strerror(error_));
    return kRunFailed;
}

}  // namespace TARN::Cli
