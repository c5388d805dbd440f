#include "folder_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

namespace TARN::FileUtil {

namespace {

/// A file descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int fd) noexcept : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) {
            ::close(fd_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] bool IsOpen() const noexcept { return fd_ >= 0; }
    [[nodiscard]] int Get() const noexcept { return fd_; }
    [[nodiscard]] bool Close() noexcept { return ::close(std::exchange(fd_, -1)) == 0; }

private:
    int fd_;
};

bool WriteAll(int fd, const std::string& content) {
    size_t done = 0;
    while (done < content.size()) {
        const ssize_t written = ::write(fd, content.data() + done, content.size() - done);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        done += static_cast<size_t>(written);
    }
    return true;
}

bool WriteAndFlush(const std::string& path, const std::string& content) {
    constexpr mode_t kOwnerOnly = 0600;
    Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, kOwnerOnly));
    return file.IsOpen() && WriteAll(file.Get(), content) && ::fsync(file.Get()) == 0 && file.Close();
}

/// The rename itself must reach the disk too; a file system that cannot do that is not our failure.
void FlushFolder(const std::string& folder) {
    const Descriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.IsOpen()) {
        (void)::fsync(directory.Get());
    }
}

}  // namespace

bool FolderFiles::Load(const std::string& path, std::string& content) {
    const Descriptor file(::open((root_ + path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat facts {};
    if (!file.IsOpen() || ::fstat(file.Get(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return false;
    }
    std::string read;
    std::array<char, 4096> block;
    for (;;) {
        const ssize_t count = ::read(file.Get(), block.data(), block.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return false;
        }
        if (count == 0) {
            break;
        }
        read.append(block.data(), static_cast<size_t>(count));
    }
    content = std::move(read);
    return true;
}

bool FolderFiles::Replace(const std::string& path, const std::string& content) {
    const std::filesystem::path target = root_ + path;
    const std::string temporary = target.string() + ".tmp";
    const std::lock_guard lock(replacing_);
    std::error_code ignored;  // a folder that cannot be made shows when the file is opened
    std::filesystem::create_directories(target.parent_path(), ignored);
    if (!WriteAndFlush(temporary, content) || std::rename(temporary.c_str(), target.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    FlushFolder(target.parent_path().string());
    return true;
}

bool FolderFiles::Remove(const std::string& path) {
    return ::unlink((root_ + path).c_str()) == 0 || errno == ENOENT;
}

bool FolderFiles::Exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(root_ + path, error) || error;
}

}  // namespace TARN::FileUtil
