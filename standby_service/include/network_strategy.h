#ifndef STANDBY_SERVICE_NETWORK_STRATEGY_H
#define STANDBY_SERVICE_NETWORK_STRATEGY_H

#include "base_network_strategy.h"

namespace TARN::DevStandbyMgr {

/// The firewall of deep standby: in automatic mode it is on in SLEEP, phase DEEP, and off once SLEEP is left, be it
/// for a MAINTENANCE.
class NetworkStrategy : public BaseNetworkStrategy {
public:
    NetworkStrategy() : BaseNetworkStrategy(Firewall::DEEP_STANDBY) {}
    void HandleEvent(const StandbyMessage& message) override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

protected:
    void SetFirewallAllowedList(const std::vector<uint32_t>& uids, bool isAdded) override;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_NETWORK_STRATEGY_H
