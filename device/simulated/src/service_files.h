#ifndef DEVICE_SIMULATED_SERVICE_FILES_H
#define DEVICE_SIMULATED_SERVICE_FILES_H

#include <string>

#include "file_service.h"
#include "phone_core.h"

namespace TARN::Simulated {

/// The files as the service has them: shown to the observer when they change, and out of reach of one that is dead.
class ServiceFiles : public FileUtil::FileService {
public:
    ServiceFiles(PhoneCore& core, FileUtil::FileService& files) : core_(core), files_(files) {}

    [[nodiscard]] bool Load(const std::string& path, std::string& content) override {
        return !core_.isCutOff && files_.Load(path, content);
    }
    [[nodiscard]] bool Replace(const std::string& path, const std::string& content) override {
        return !core_.isCutOff && files_.Replace(path, content) && Shown(path);
    }
    bool Remove(const std::string& path) override { return !core_.isCutOff && files_.Remove(path) && Shown(path); }
    [[nodiscard]] bool Exists(const std::string& path) override { return !core_.isCutOff && files_.Exists(path); }

private:
    bool Shown(const std::string& path) {
        core_.observer.OnFile(path);
        return true;
    }

    PhoneCore& core_;
    FileUtil::FileService& files_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_SERVICE_FILES_H
