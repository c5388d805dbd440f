#ifndef PLATFORM_NET_POLICY_CLIENT_H
#define PLATFORM_NET_POLICY_CLIENT_H

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "delayed_singleton.h"
#include "device.h"

namespace TARN::NetManagerStandard {

/// The network policy service: who may use the network while the device is idle.
class NetPolicyClient {
public:
    using IdlePolicyObserver = std::function<void(bool enabled)>;

    virtual ~NetPolicyClient() = default;

    /// The installed device's client; the device owns it.
    static std::shared_ptr<NetPolicyClient> Shared() {
        return {std::shared_ptr<void>(), &Device::Current().NetPolicy()};
    }

    /// Puts the uids on the trust list of the device-idle policy, or takes them off. Returns 0 on success.
    virtual int32_t SetDeviceIdleTrustlist(const std::vector<uint32_t>& uids, bool isAdded) = 0;

    /// Replaces `uids` with the trust list as the service holds it; it outlives whoever filled it. Returns 0 on
    /// success; else `uids` is untouched.
    virtual int32_t GetDeviceIdleTrustlist(std::vector<uint32_t>& uids) = 0;

    /// Switches the device-idle policy: while on, only trusted uids reach the network. Returns 0 on success.
    virtual int32_t SetDeviceIdlePolicy(bool enable) = 0;

    /// Calls `observer` whenever the device-idle policy is switched, until the next call with another one; an
    /// empty observer ends it. Calls arrive on the service's thread. The call waits until the earlier observer
    /// does not run any more, unless it comes from within it.
    virtual void ObserveDeviceIdlePolicy(IdlePolicyObserver observer) = 0;
};

}  // namespace TARN::NetManagerStandard

#endif  // PLATFORM_NET_POLICY_CLIENT_H
