#pragma once

#include <string>
#include <vector>

#include "standby_message.h"

namespace TARN::DevStandbyMgr {
class IBaseStrategy {
public:
    virtual void HandleEvent(const StandbyMessage& message) = 0;
    [[nodiscard]] virtual int32_t OnCreated() = 0;
    [[nodiscard]] virtual int32_t OnDestroy() = 0;
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result);
    virtual ~IBaseStrategy();
};
}  // namespace TARN::DevStandbyMgr
