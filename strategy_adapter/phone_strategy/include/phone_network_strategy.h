#ifndef PHONE_STRATEGY_PHONE_NETWORK_STRATEGY_H
#define PHONE_STRATEGY_PHONE_NETWORK_STRATEGY_H

#include "network_strategy.h"
#include "phone_standby_status.h"

namespace TARN::DevStandbyMgr {

/// The phone's firewall of deep standby: stricter at night, and it leaves the firewall of user sleep alone.
///
/// Listens to and commands what the service's NetworkStrategy does.
class PhoneNetWorkStrategy : public NetworkStrategy {
public:
    ErrCode OnCreated() override;
    ErrCode OnDestroy() override;

protected:
    /// STATE_REQ_NOT_MET when the firewall is off; OK, and nothing done, while the user sleeps.
    ErrCode DisableNetworkFirewall(const StandbyMessage& message) override;

    /// While the user sleeps only the configured exemptions count. RUNNING_PROCESSES_UNAVAILABLE.
    ErrCode InitNetLimitedAppInfo() override;

    /// As the base, but under condition 2 an application needs more than 0x10, and 0x40 excludes it.
    void SetNetAllowApps(bool isAllow) override;
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_PHONE_NETWORK_STRATEGY_H
