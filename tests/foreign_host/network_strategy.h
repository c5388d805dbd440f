#pragma once

#include "base_network_strategy.h"

namespace TARN::DevStandbyMgr {
class NetworkStrategy : public BaseNetworkStrategy {
public:
    void HandleEvent(const StandbyMessage& message) override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

protected:
    void SetFirewallAllowedList(const std::vector<uint32_t>& uids, bool isAdded) override;
};
}  // namespace TARN::DevStandbyMgr
