#ifndef STANDBY_SERVICE_PROXIED_APP_INFO_H
#define STANDBY_SERVICE_PROXIED_APP_INFO_H

#include <cstdint>
#include <string>

namespace TARN::DevStandbyMgr {

/// One process whose running locks may be proxied.
struct ProxiedAppInfo {
    std::string name;
    int32_t uid = -1;
    int32_t pid = -1;
    uint8_t exemptionFlag = 0;  ///< bits of ExemptionFlag
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_PROXIED_APP_INFO_H
