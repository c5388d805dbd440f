#ifndef PHONE_STRATEGY_PUSH_STRATEGY_H
#define PHONE_STRATEGY_PUSH_STRATEGY_H

#include <string>
#include <vector>

#include "ibase_strategy.h"
#include "phone_standby_status.h"

namespace TARN::DevStandbyMgr {

/// Tells push clients by broadcast when the network is put under idle control and when it is given back.
///
/// Listens to: NET_IDLE_POLICY_TRANSIT. Commands: the network-control broadcast.
class PushStrategy : public IBaseStrategy {
public:
    void HandleEvent(const StandbyMessage& message) override;

    /// Gives the network back, in case an earlier run of the service left it under control.
    ErrCode OnCreated() override;
    ErrCode OnDestroy() override;

    /// "--restorectrlnetwork" and "--ctrlnetwork" as second word send the broadcasts.
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

private:
    void OnNetIdlePolicyTransit(const StandbyMessage& message);

    /// COMMON_EVENT_PUBLISH when the broadcast is refused.
    [[nodiscard]] ErrCode ReportCtrlNetworkStatus(bool isCtrl);
    [[nodiscard]] ErrCode ReportRestoreNetworkStatus();
    [[nodiscard]] static bool Publish(const std::string& parameter, bool value);
};

}  // namespace TARN::DevStandbyMgr

#endif  // PHONE_STRATEGY_PUSH_STRATEGY_H
