#ifndef STANDBY_SERVICE_STANDBY_SERVICE_IMPL_H
#define STANDBY_SERVICE_STANDBY_SERVICE_IMPL_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "allow_info.h"
#include "event_handler.h"
#include "host_reason.h"
#include "iconstraint_manager_adapter.h"
#include "ilistener_manager_adapter.h"
#include "istate_manager_adapter.h"
#include "istrategy_manager_adapter.h"
#include "owned_tasks.h"
#include "radio_watch.h"
#include "running_applications.h"
#include "standby_config.h"
#include "standby_message.h"
#include "standby_service_errors.h"

namespace TARN::DevStandbyMgr {

class ConditionWatch;
class DeviceStateCache;
class PluginLibrary;
class StandbyConfigManager;

/// The standby service: loads the plugin, owns its adapters and delivers every message to it.
///
/// Life: Create, LoadPlugin, Init, then messages; UnInit (unless the service crashes), UnloadPlugin, which may
/// be followed by LoadPlugin again; Destroy. All of it, and every delivery, belongs on the handler's thread;
/// only GetInstance, DispatchEvent, Refresh and GetHandler may be called from any thread.
class StandbyServiceImpl : public std::enable_shared_from_this<StandbyServiceImpl> {
public:
    using DeliveryObserver = std::function<void(const StandbyMessage&)>;
    using ReasonObserver = std::function<void(const HostReason&)>;

    /// The running service, null when there is none. Whoever holds it keeps it alive over Destroy.
    [[nodiscard]] static std::shared_ptr<StandbyServiceImpl> GetInstance();

    /// Makes the process's service on the installed device, and sets STANDBT_MODE. Null when the device
    /// cannot start its handler.
    static std::shared_ptr<StandbyServiceImpl> Create(StandbyConfig config);

    /// Ends the process's service and unloads its plugin.
    static void Destroy();

    ~StandbyServiceImpl();
    StandbyServiceImpl(const StandbyServiceImpl&) = delete;
    StandbyServiceImpl& operator=(const StandbyServiceImpl&) = delete;

    /// Loads the plugin at `path`, in place of a loaded one, and has it register. False, and the reason in `error`,
    /// when it cannot; then none is loaded.
    bool LoadPlugin(const std::string& path, std::string& error);

    /// Has the device drop what the plugin left behind, destroys the adapters and unloads the plugin.
    void UnloadPlugin();

    /// Takes the plugin's adapters and owns them from here on, in place of earlier ones.
    void RegisterPluginInner(IConstraintManagerAdapter* constraintManager, IListenerManagerAdapter* listenerManager,
                             IStrategyManagerAdapter* strategyManager, IStateManagerAdapter* stateManager);

    /// Initialises the constraint, listener, strategy and state adapters in this order and starts the
    /// listeners. An adapter that refuses is reported and the rest goes on.
    void Init();

    /// Stops the listener, strategy, state and constraint adapters in this order.
    void UnInit();

    /// Queues a message for delivery to all strategies, after the work that runs now. Any thread.
    void DispatchEvent(StandbyMessage message);

    /// Has every strategy append what it has to say to the dump words. In automatic mode the service tells its own part
    /// first, to the words that ask for every detail: state and phase, what would hold them back, what is frozen and
    /// stretched. Words that move the state go to the state manager alone.
    void ShellDump(const std::vector<std::string>& args, std::string& result);

    /// What is known of the applications may have changed, or is to be looked at: queues one HOST_REFRESH, however
    /// often it is called until that is delivered. Any thread. In automatic mode only.
    void Refresh();

    /// The same after StandbyPolicy::retryAfterSeconds, for what was refused now.
    void RefreshLater();

    /// When that will be, by the wall clock in milliseconds; -1 while nothing waits. Only where reasons are wanted.
    [[nodiscard]] int64_t NextRefreshMs() const noexcept { return isRefreshWaiting_ ? nextRefreshMs_ : -1; }

    /// Calls `observer` with each message right before the strategies get it.
    void ObserveDelivery(DeliveryObserver observer) { deliveryObserver_ = std::move(observer); }

    /// Calls `observer` with the reason of each decision that the service makes by itself, in automatic mode.
    void ObserveReasons(ReasonObserver observer) { reasonObserver_ = std::move(observer); }

    /// Whether anybody wants reasons, and there are any; where not, none need be put together.
    [[nodiscard]] bool WantsReasons() const { return reasonObserver_ && IsAutomatic(); }

    /// Hands a reason to the observer. Only where reasons are wanted.
    void TellReason(const HostReason& reason) const { reasonObserver_(reason); }

    [[nodiscard]] std::shared_ptr<AppExecFwk::EventHandler> GetHandler() const { return handler_; }
    [[nodiscard]] std::shared_ptr<IConstraintManagerAdapter> GetConstraintManager() const { return constraintManager_; }
    [[nodiscard]] std::shared_ptr<IStateManagerAdapter> GetStateManager() const { return stateManager_; }
    [[nodiscard]] std::shared_ptr<StandbyConfigManager> GetConfigManager() const { return configManager_; }
    [[nodiscard]] std::shared_ptr<DeviceStateCache> GetDeviceStateCache() const { return deviceStateCache_; }
    [[nodiscard]] ConditionWatch& GetConditionWatch() const { return *conditionWatch_; }
    [[nodiscard]] RunningApplications& Applications() noexcept { return applications_; }

    /// Whether the host decides on its own.
    [[nodiscard]] bool IsAutomatic() const;

    /// Whether changes of what the host keeps become messages: in automatic mode, once there is a plugin.
    [[nodiscard]] bool ReportsChanges() const { return IsAutomatic() && strategyManager_ != nullptr; }

    /// Replaces `allowInfos` with the exemptions of a type. Returns 0 on success.
    int32_t GetAllowList(int32_t allowType, std::vector<AllowInfo>& allowInfos, uint32_t reasonCode) const;

    /// Replaces `restrictSet` with the names that are restricted for a type. Returns 0 on success.
    int32_t GetEligiableRestrictSet(int32_t allowType, const std::string& strategyName, uint32_t reasonCode,
                                    std::set<std::string>& restrictSet) const;

    /// Replaces both sets by what GetAllowList and GetEligiableRestrictSet answer. 0; or which Question failed, logged,
    /// and nothing is replaced.
    [[nodiscard]] uint8_t FetchExemptions(int32_t allowType, const std::string& strategyName,
                                          std::set<std::string>& allowed, std::set<std::string>& restricted) const;

    /// Replaces the exemptions of a type; in automatic mode each change is an ALLOW_LIST_CHANGED.
    void SetAllowList(int32_t allowType, const std::vector<std::string>& names);

    /// Replaces the restricted names of a type; in automatic mode a change is a HOST_REFRESH.
    void SetRestrictSet(int32_t allowType, std::set<std::string> names);

private:
    explicit StandbyServiceImpl(StandbyConfig config);

    void Deliver(const StandbyMessage& message);
    void ReportAllowChange(int32_t allowType, const std::string& name, bool added);
    void DumpHost(const std::vector<std::string>& args, std::string& result) const;

    std::shared_ptr<AppExecFwk::EventHandler> handler_;
    OwnedTasks tasks_;
    std::shared_ptr<StandbyConfigManager> configManager_;
    std::shared_ptr<DeviceStateCache> deviceStateCache_;
    std::unique_ptr<ConditionWatch> conditionWatch_;
    RadioWatch radioWatch_;
    RunningApplications applications_;
    std::atomic<bool> isRefreshQueued_ = false;
    bool isRefreshWaiting_ = false;  ///< for its time to come
    int64_t nextRefreshMs_ = -1;
    DeliveryObserver deliveryObserver_;
    ReasonObserver reasonObserver_;
    std::map<int32_t, std::vector<std::string>> allowLists_;
    std::map<int32_t, std::set<std::string>> restrictSets_;

    std::unique_ptr<PluginLibrary> plugin_;
    std::shared_ptr<IConstraintManagerAdapter> constraintManager_;
    std::shared_ptr<IListenerManagerAdapter> listenerManager_;
    std::shared_ptr<IStrategyManagerAdapter> strategyManager_;
    std::shared_ptr<IStateManagerAdapter> stateManager_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_STANDBY_SERVICE_IMPL_H
