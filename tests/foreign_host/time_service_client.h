#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>

namespace TARN::MiscServices {
class TimeServiceClient {
public:
    static std::shared_ptr<TimeServiceClient> GetInstance();
    int64_t GetWallTimeMs();
    int64_t GetBootTimeNs();
    [[nodiscard]] bool StartTimer(uint64_t timerId, uint64_t triggerTime);
    [[nodiscard]] bool StopTimer(uint64_t timerId);
    [[nodiscard]] bool DestroyTimer(uint64_t timerId);
    [[nodiscard]] bool AdjustTimer(bool isAdjust, uint32_t interval);
    [[nodiscard]] bool SetTimerExemption(const std::unordered_set<std::string>& names, bool isExemption);
};
}  // namespace TARN::MiscServices
