#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <random>
#include <stdexcept>

#include "campaigns.h"
#include "folder_files.h"

namespace TARN::Tests {

namespace {

namespace fs = std::filesystem;

enum Figure : uint8_t { KILLS, TEMPORARIES_LEFT };

constexpr char kFolder[] = "/service";
constexpr int kFiles = 2;
constexpr int kKillsOfAFolder = 100;
constexpr unsigned kMostMicroseconds = 4'000;

std::string PathOf(uint64_t file) {
    return kFolder + std::string("/file-") + std::to_string(file);
}

/// A content that a part of it does not look like, nor a mixture with another one.
std::string Content(uint64_t version) {
    const size_t size = version * 7919 % 60'000;
    return std::to_string(version) + std::string(size, static_cast<char>('a' + version % 26)) + std::to_string(version);
}

/// How far a writer has come, for others to see.
struct Progress {
    std::atomic<uint64_t> begun = 0;  ///< the version that is being written
    std::atomic<uint64_t> done = 0;   ///< the last one that was written
};

/// The folder that several writers, one after the other, keep their files in.
class Folder {
public:
    Folder() {
        void* const shared =
            ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (shared == MAP_FAILED) {
            throw std::runtime_error("no memory to share");
        }
        progress_ = new (shared) Progress;
    }
    ~Folder() {
        ::munmap(progress_, sizeof(Progress));
        fs::remove_all(root_);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    void KillAWriter(unsigned afterMicroseconds) {
        const pid_t writer = ::fork();
        if (writer == 0) {
            WriteForever();
        }
        ::usleep(afterMicroseconds);
        ::kill(writer, SIGKILL);
        ::waitpid(writer, nullptr, 0);
    }

    /// What is wrong with the folder; empty: nothing.
    [[nodiscard]] std::string Look() {
        for (uint64_t file = 0; file < kFiles; ++file) {
            std::string content;
            const bool isThere = files_.Load(PathOf(file), content);
            const uint64_t old = Last(progress_->done, file);
            const uint64_t latest = Last(progress_->begun, file);
            const bool isWhole = isThere ? content == Content(old) || content == Content(latest) : old == 0;
            if (!isWhole) {
                return PathOf(file) + " is neither version " + std::to_string(old) + " nor " + std::to_string(latest);
            }
        }
        return Beside() > kFiles ? std::to_string(Beside()) + " files are left beside" : "";
    }

    /// How many files are there that nobody asked for.
    [[nodiscard]] uint64_t Beside() const {
        uint64_t count = 0;
        if (fs::exists(root_ + kFolder)) {
            for (const auto& entry : fs::directory_iterator(root_ + kFolder)) {
                count += entry.path().extension() == ".tmp" ? 1 : 0;
            }
        }
        return count;
    }

private:
    /// Version n goes to file n % kFiles: the last one of a file up to a version.
    static uint64_t Last(uint64_t version, uint64_t file) {
        while (version % kFiles != file && version > 0) {
            --version;
        }
        return version;
    }

    [[noreturn]] void WriteForever() {
        // what the one before was killed at comes first
        for (uint64_t version = std::max<uint64_t>(progress_->begun, 1);; ++version) {
            progress_->begun = version;
            if (!files_.Replace(PathOf(version % kFiles), Content(version))) {
                std::abort();
            }
            progress_->done = version;
        }
    }

    static std::string MakeFolder() {
        std::string path = fs::temp_directory_path() / "standby-writers-XXXXXX";
        if (::mkdtemp(path.data()) == nullptr) {
            throw std::runtime_error("no folder " + path);
        }
        return path;
    }

    std::string root_ = MakeFolder();
    FileUtil::FolderFiles files_{root_};
    Progress* progress_ = nullptr;
};

}  // namespace

Campaign KillWriters(uint64_t seed) {
    const auto name = [seed](uint64_t number) {
        return "--seed " + std::to_string(seed) + " --first " + std::to_string(number);
    };
    return {"folders", {"kills", "temporary files found left"}, name, [seed, name](uint64_t number, Report& report) {
                std::mt19937_64 random(seed * 1'000'003 + number);
                Folder folder;
                for (int kill = 0; kill < kKillsOfAFolder; ++kill) {
                    folder.KillAWriter(static_cast<unsigned>(random() % kMostMicroseconds));
                    report.Count(KILLS);
                    report.Count(TEMPORARIES_LEFT, folder.Beside());
                    if (const std::string wrong = folder.Look(); !wrong.empty()) {
                        report.Find(name(number), wrong);
                    }
                }
            }};
}

}  // namespace TARN::Tests
