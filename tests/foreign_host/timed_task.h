#pragma once

#include <cstdint>
#include <functional>

namespace TARN::DevStandbyMgr {
class TimedTask {
public:
    [[nodiscard]] static uint64_t CreateTimer(bool repeat, unsigned long interval, bool third, bool fourth,
                                              const std::function<void()>& callback);
};
}  // namespace TARN::DevStandbyMgr
