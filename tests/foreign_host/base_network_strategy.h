#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "ibase_strategy.h"

namespace TARN::DevStandbyMgr {
struct NamedExemptionFlags {
    std::string hiddenName;
    uint8_t hiddenFlags;
};

class BaseNetworkStrategy : public IBaseStrategy {
public:
    void HandleEvent(const StandbyMessage& message) override;
    [[nodiscard]] int32_t OnCreated() override;
    [[nodiscard]] int32_t OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
    virtual void HandleDeviceIdlePolicy(bool enable);

protected:
    virtual void SetFirewallAllowedList(const std::vector<uint32_t>& uids, bool isAdded) = 0;
    virtual void UpdateExemptionList(const StandbyMessage& message);
    virtual void UpdateFirewallAllowList();
    [[nodiscard]] virtual int32_t EnableNetworkFirewall(const StandbyMessage& message);
    [[nodiscard]] virtual int32_t DisableNetworkFirewall(const StandbyMessage& message);
    virtual void UpdateBgTaskAppStatus(const StandbyMessage& message);
    virtual void HandleProcessStatusChanged(const StandbyMessage& message);
    [[nodiscard]] virtual int32_t InitNetLimitedAppInfo();
    virtual void SetNetAllowApps(bool isAllow);

    void ResetFirewallAllowList();
    void SetFirewallStatus(bool isEnabled);
    [[nodiscard]] int32_t GetAllRunningAppInfo();
    [[nodiscard]] int32_t GetExemptionConfig();
    [[nodiscard]] int32_t EnableNetworkFirewallInner();
    void DisableNetworkFirewallInner();

    int32_t exemptedTaskType_ = 278;
    int32_t condition_ = 0;
    int32_t curState_ = 0;
    int32_t curPhase_ = 0;
    static bool isFirewallEnabled_;
    static std::unordered_map<uint32_t, NamedExemptionFlags> netLimitedAppInfo_;
};
}  // namespace TARN::DevStandbyMgr
