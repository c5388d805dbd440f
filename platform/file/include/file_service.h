#ifndef PLATFORM_FILE_SERVICE_H
#define PLATFORM_FILE_SERVICE_H

#include <string>

namespace TARN::FileUtil {

/// Where a device keeps the service's own files. Paths begin with `/`, the device's own root. Any thread may call.
class FileService {
public:
    virtual ~FileService() = default;

    /// Reads the whole regular file into `content`. False, and `content` untouched, when it cannot be read.
    [[nodiscard]] virtual bool Load(const std::string& path, std::string& content) = 0;

    /// Replaces the file by one that holds `content`, and makes the folders that are missing; at any instant the old or
    /// the new content is there whole. False, and the old file as it was, on failure.
    [[nodiscard]] virtual bool Replace(const std::string& path, const std::string& content) = 0;

    /// Removes the file, or does nothing where none is. False when it stays.
    virtual bool Remove(const std::string& path) = 0;

    /// Whether anything is there, readable or not.
    [[nodiscard]] virtual bool Exists(const std::string& path) = 0;
};

}  // namespace TARN::FileUtil

#endif  // PLATFORM_FILE_SERVICE_H
