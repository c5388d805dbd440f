#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "ibase_strategy.h"

namespace TARN::DevStandbyMgr {
struct ProxiedAppInfo {
    std::string hiddenName;
    int32_t hiddenUid;
    int32_t hiddenPid;
    uint8_t hiddenFlag;
};

class RunningLockStrategy : public IBaseStrategy {
public:
    void HandleEvent(const StandbyMessage& message) override;
    [[nodiscard]] int32_t OnCreated() override;
    [[nodiscard]] int32_t OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
    [[nodiscard]] virtual int32_t InitNativeProcInfo();
    virtual void AddExemptionFlag(int32_t uid, const std::string& name, uint8_t flag);
    virtual void RemoveExemptionFlag(int32_t uid, const std::string& name, uint8_t flag);
    virtual void ProxyAppAndProcess(bool isProxied);
    virtual void ClearProxyRecord();
    [[nodiscard]] int32_t ProxyRunningLockList(bool isProxied, const std::vector<std::pair<int32_t, int32_t>>& list);

protected:
    bool isProxied_ = false;
};
}  // namespace TARN::DevStandbyMgr
