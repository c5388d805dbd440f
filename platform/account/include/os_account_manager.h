#ifndef PLATFORM_OS_ACCOUNT_MANAGER_H
#define PLATFORM_OS_ACCOUNT_MANAGER_H

#include <cstdint>
#include <vector>

#include "device.h"

namespace TARN::AccountSA {

/// The operating system's user accounts.
class OsAccountManager {
public:
    virtual ~OsAccountManager() = default;

    /// Fills `ids` with the active accounts, first one first. Returns 0 on success.
    static int32_t QueryActiveOsAccountIds(std::vector<int>& ids) {
        return Device::Current().Accounts().QueryActive(ids);
    }

protected:
    virtual int32_t QueryActive(std::vector<int>& ids) = 0;
};

}  // namespace TARN::AccountSA

#endif  // PLATFORM_OS_ACCOUNT_MANAGER_H
