#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "imesssage_listener.h"
#include "standby_message.h"

namespace TARN::DevStandbyMgr {
class IListenerManagerAdapter {
public:
    [[nodiscard]] virtual bool Init() = 0;
    [[nodiscard]] virtual bool UnInit() = 0;
    [[nodiscard]] virtual int32_t StartListener() = 0;
    [[nodiscard]] virtual int32_t StopListener() = 0;
    virtual void HandleEvent(const StandbyMessage& message) = 0;
    virtual void ShellDump(const std::vector<std::string>& args, std::string& result) = 0;
    virtual ~IListenerManagerAdapter();
};

class ListenerManagerAdapter : public IListenerManagerAdapter {
public:
    [[nodiscard]] bool Init() override;
    [[nodiscard]] bool UnInit() override;
    [[nodiscard]] int32_t StartListener() override;
    [[nodiscard]] int32_t StopListener() override;
    void HandleEvent(const StandbyMessage& message) override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;

protected:
    std::vector<std::shared_ptr<IMesssageListener>> messageListenerList_;
    std::map<int32_t, std::shared_ptr<IMesssageListener>> eventListenerMap_;
};
}  // namespace TARN::DevStandbyMgr
