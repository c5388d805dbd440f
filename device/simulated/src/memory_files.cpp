#include "memory_files.h"

namespace TARN::Simulated {

bool MemoryFiles::Load(const std::string& path, std::string& content) {
    const std::lock_guard lock(mutex_);
    const auto found = files_.find(path);
    if (found == files_.end()) {
        return false;
    }
    content = found->second;
    return true;
}

bool MemoryFiles::Replace(const std::string& path, const std::string& content) {
    const std::lock_guard lock(mutex_);
    files_.insert_or_assign(path, content);
    return true;
}

bool MemoryFiles::Remove(const std::string& path) {
    const std::lock_guard lock(mutex_);
    files_.erase(path);
    return true;
}

bool MemoryFiles::Exists(const std::string& path) {
    const std::lock_guard lock(mutex_);
    return files_.contains(path);
}

}  // namespace TARN::Simulated
