#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace TARN::BackgroundTaskMgr {
class ContinuousTaskCallbackInfo {
public:
    uint32_t GetTypeId() const;
    int32_t GetCreatorUid() const;
    int32_t GetCreatorPid() const;
};

class BackgroundTaskMgrHelper {
public:
    [[nodiscard]] static int32_t GetContinuousTaskApps(std::vector<std::shared_ptr<ContinuousTaskCallbackInfo>>& list);
};
}  // namespace TARN::BackgroundTaskMgr
