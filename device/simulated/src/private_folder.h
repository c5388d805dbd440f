#ifndef DEVICE_SIMULATED_PRIVATE_FOLDER_H
#define DEVICE_SIMULATED_PRIVATE_FOLDER_H

#include <string>

namespace TARN::Simulated {

/// A fresh folder that nobody else reads, removed with everything in it when this object goes.
class PrivateFolder {
public:
    /// Made in memory where the machine has such a file system. Throws std::runtime_error when it cannot be.
    PrivateFolder();
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    [[nodiscard]] const std::string& Path() const noexcept { return path_; }

private:
    std::string path_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_PRIVATE_FOLDER_H
