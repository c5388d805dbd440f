#ifndef STANDBY_SERVICE_ALLOW_INFO_H
#define STANDBY_SERVICE_ALLOW_INFO_H

#include <cstdint>
#include <string>
#include <utility>

namespace TARN::DevStandbyMgr {

/// One exemption in the allow list.
class AllowInfo {
public:
    AllowInfo(int32_t allowType, std::string name) : allowType_(allowType), name_(std::move(name)) {}

    [[nodiscard]] int32_t GetAllowType() const noexcept { return allowType_; }
    [[nodiscard]] const std::string& GetName() const noexcept { return name_; }

private:
    int32_t allowType_;
    std::string name_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_ALLOW_INFO_H
