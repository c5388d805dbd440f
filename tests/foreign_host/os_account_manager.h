#pragma once

#include <cstdint>
#include <vector>

namespace TARN::AccountSA {
class OsAccountManager {
public:
    [[nodiscard]] static int32_t QueryActiveOsAccountIds(std::vector<int>& ids);
};
}  // namespace TARN::AccountSA
