#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace TARN {
template <class Client>
class DelayedSingleton {
public:
    static std::shared_ptr<Client> GetInstance();
};
}  // namespace TARN

namespace TARN::NetManagerStandard {
class NetPolicyClient {
public:
    [[nodiscard]] int32_t SetDeviceIdleTrustlist(const std::vector<uint32_t>& uids, bool isAdded);
};
}  // namespace TARN::NetManagerStandard
