#ifndef DEVICE_SIMULATED_MEMORY_FILES_H
#define DEVICE_SIMULATED_MEMORY_FILES_H

#include <map>
#include <mutex>
#include <string>

#include "file_service.h"

namespace TARN::Simulated {

/// Files that come and go with the phone; nothing of them is on the machine.
class MemoryFiles : public FileUtil::FileService {
public:
    [[nodiscard]] bool Load(const std::string& path, std::string& content) override;
    [[nodiscard]] bool Replace(const std::string& path, const std::string& content) override;
    bool Remove(const std::string& path) override;
    [[nodiscard]] bool Exists(const std::string& path) override;

private:
    std::mutex mutex_;
    std::map<std::string, std::string> files_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_MEMORY_FILES_H
