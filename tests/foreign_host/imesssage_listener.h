#pragma once

#include <cstdint>

namespace TARN::DevStandbyMgr {
class IMesssageListener {
public:
    [[nodiscard]] virtual int32_t StartListener() = 0;
    [[nodiscard]] virtual int32_t StopListener() = 0;
    virtual ~IMesssageListener();
};
}  // namespace TARN::DevStandbyMgr
