#include "private_folder.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace TARN::Simulated {

PrivateFolder::PrivateFolder() {
    constexpr char kMemory[] = "/dev/shm";
    const bool hasMemory = ::access(kMemory, W_OK) == 0;
    path_ = (hasMemory ? std::string(kMemory) : std::filesystem::temp_directory_path().string()) + "/standby-XXXXXX";
    if (::mkdtemp(path_.data()) == nullptr) {
        throw std::runtime_error("cannot make a private folder " + path_ + ": " + std::strerror(errno));
    }
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;  // nothing useful can be done about a folder that stays
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace TARN::Simulated
