#ifndef PLATFORM_FOLDER_FILES_H
#define PLATFORM_FOLDER_FILES_H

#include <mutex>
#include <string>
#include <utility>

#include "file_service.h"

namespace TARN::FileUtil {

/// Files on disk. A crash at any instant leaves a replaced file old or new and whole: the bytes go to a temporary file
/// in the same folder, which is flushed to disk and renamed.
class FolderFiles : public FileService {
public:
    /// `root` is the folder that stands for `/`: empty on a phone.
    explicit FolderFiles(std::string root) : root_(std::move(root)) {}

    [[nodiscard]] bool Load(const std::string& path, std::string& content) override;
    [[nodiscard]] bool Replace(const std::string& path, const std::string& content) override;
    bool Remove(const std::string& path) override;
    [[nodiscard]] bool Exists(const std::string& path) override;

private:
    std::string root_;
    std::mutex replacing_;  ///< two threads may replace the same file
};

}  // namespace TARN::FileUtil

#endif  // PLATFORM_FOLDER_FILES_H
