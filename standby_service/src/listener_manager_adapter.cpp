#include "listener_manager_adapter.h"

#include <mutex>
#include <set>
#include <tuple>
#include <utility>

#include "app_mgr_client.h"
#include "background_task_mgr_helper.h"
#include "common_event_manager.h"
#include "common_event_support.h"
#include "condition_watch.h"
#include "net_policy_client.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using BackgroundTaskMgr::BackgroundTaskMgrHelper;
using BackgroundTaskMgr::ContinuousTaskCallbackInfo;
using EventFwk::CommonEventManager;
using EventFwk::CommonEventSupport;

/// A subscriber of the service's own.
class HostSubscriber : public EventFwk::CommonEventSubscriber,
                       public IMesssageListener,
                       public std::enable_shared_from_this<HostSubscriber> {
public:
    using EventFwk::CommonEventSubscriber::CommonEventSubscriber;

    ErrCode StartListener() override {
        isRefused_ = !CommonEventManager::SubscribeCommonEvent(shared_from_this());
        if (isRefused_) {
            STANDBYSERVICE_LOGE("the service's broadcasts could not be subscribed to");
            StandbyServiceImpl::GetInstance()->RefreshLater();
        }
        return isRefused_ ? ERR_COMMON_EVENT_SUBSCRIBE : ERR_OK;
    }

    ErrCode StopListener() override {
        if (std::exchange(isRefused_, false) || CommonEventManager::UnSubscribeCommonEvent(shared_from_this())) {
            return ERR_OK;
        }
        STANDBYSERVICE_LOGE("the service's broadcasts could not be unsubscribed from");
        return ERR_COMMON_EVENT_UNSUBSCRIBE;
    }

    /// Whether it was started, was refused, and was not stopped since.
    [[nodiscard]] bool IsRefused() const noexcept { return isRefused_; }

private:
    bool isRefused_ = false;
};

/// Hands system broadcasts on as COMMON_EVENT.
class BroadcastListener : public HostSubscriber {
public:
    using HostSubscriber::HostSubscriber;

    void OnReceiveEvent(const EventFwk::CommonEventData& data) override {
        const AAFwk::Want& want = data.GetWant();
        if (const auto service = StandbyServiceImpl::GetInstance()) {
            service->DispatchEvent(StandbyMessage(StandbyMessageType::COMMON_EVENT, want.GetAction(), want));
        }
    }
};

/// Has the condition looked at when somebody sets the clock.
class ClockListener : public HostSubscriber {
public:
    using HostSubscriber::HostSubscriber;

    void OnReceiveEvent(const EventFwk::CommonEventData& /*data*/) override {
        const auto service = StandbyServiceImpl::GetInstance();
        if (service == nullptr) {
            return;
        }
        service->GetHandler()->PostTask([] {
            if (const auto running = StandbyServiceImpl::GetInstance()) {
                running->GetConditionWatch().OnClockChanged();
            }
        });
    }
};

/// Tells which continuous tasks start, and when the last of a type is over.
class BackgroundTaskListener : public IMesssageListener, public std::enable_shared_from_this<BackgroundTaskListener> {
public:
    ErrCode StartListener() override {
        BackgroundTaskMgrHelper::ObserveContinuousTasks(
            [self = weak_from_this()](const ContinuousTaskCallbackInfo& task, bool started) {
                if (const auto listener = self.lock()) {
                    listener->OnTask(task, started);
                }
            });
        std::vector<std::shared_ptr<ContinuousTaskCallbackInfo>> running;
        if (BackgroundTaskMgrHelper::GetContinuousTaskApps(running) != ERR_OK) {
            STANDBYSERVICE_LOGW("the continuous tasks could not be fetched");
        }
        for (const auto& task : running) {
            if (task != nullptr) {
                OnTask(*task, true);
            }
        }
        return ERR_OK;
    }

    ErrCode StopListener() override {
        BackgroundTaskMgrHelper::ObserveContinuousTasks(nullptr);
        const std::lock_guard lock(mutex_);
        tasks_.clear();
        return ERR_OK;
    }

private:
    using Task = std::tuple<uint32_t, int32_t, int32_t>;  ///< type, uid, pid

    void OnTask(const ContinuousTaskCallbackInfo& task, bool started) {
        const auto service = StandbyServiceImpl::GetInstance();
        if (service == nullptr) {
            return;
        }
        if (!Note({task.GetTypeId(), task.GetCreatorUid(), task.GetCreatorPid()}, started)) {
            service->Refresh();
            return;
        }
        service->Applications().MarkStale();  // the message below has it looked at
        AAFwk::Want want;
        want.SetParam("typeId", static_cast<int32_t>(task.GetTypeId())).SetParam("started", started);
        want.SetParam("uid", task.GetCreatorUid());
        service->DispatchEvent(StandbyMessage(StandbyMessageType::BG_TASK_STATUS_CHANGED, {}, std::move(want)));
    }

    /// Whether it is news to strategies: with two players, the first one's end is not the end of the music.
    bool Note(const Task& task, bool started) {
        const std::lock_guard lock(mutex_);  // the manager reports on a thread of its own
        if (started) {
            tasks_.insert(task);
            return true;
        }
        tasks_.erase(task);
        const auto sameType = tasks_.lower_bound({std::get<0>(task), INT32_MIN, INT32_MIN});
        return sameType == tasks_.end() || std::get<0>(*sameType) != std::get<0>(task);
    }

    std::mutex mutex_;
    std::set<Task> tasks_;
};

/// Tells that applications started, ended, came to the foreground or left it.
class ApplicationListener : public IMesssageListener {
public:
    ErrCode StartListener() override {
        AppExecFwk::AppMgrClient::GetInstance().ObserveStates([](const AppExecFwk::AppStateData&) {
            if (const auto service = StandbyServiceImpl::GetInstance()) {
                service->Refresh();
            }
        });
        return ERR_OK;
    }

    ErrCode StopListener() override {
        AppExecFwk::AppMgrClient::GetInstance().ObserveStates(nullptr);
        return ERR_OK;
    }
};

/// Tells when the network is put under idle control and when it is given back.
class IdlePolicyListener : public IMesssageListener {
public:
    ErrCode StartListener() override {
        NetPolicyClient()->ObserveDeviceIdlePolicy([](bool enabled) {
            AAFwk::Want want;
            want.SetParam(NET_IDLE_POLICY_STATUS, enabled);
            if (const auto service = StandbyServiceImpl::GetInstance()) {
                service->DispatchEvent(
                    StandbyMessage(StandbyMessageType::NET_IDLE_POLICY_TRANSIT, {}, std::move(want)));
            }
        });
        return ERR_OK;
    }

    ErrCode StopListener() override {
        NetPolicyClient()->ObserveDeviceIdlePolicy(nullptr);
        return ERR_OK;
    }

private:
    static std::shared_ptr<NetManagerStandard::NetPolicyClient> NetPolicyClient() {
        return DelayedSingleton<NetManagerStandard::NetPolicyClient>::GetInstance();
    }
};

template <class Listener>
std::shared_ptr<HostSubscriber> MakeSubscriber(std::initializer_list<std::string_view> actions) {
    EventFwk::MatchingSkills skills;
    for (const std::string_view action : actions) {
        skills.AddEvent(action);
    }
    return std::make_shared<Listener>(EventFwk::CommonEventSubscribeInfo(std::move(skills)));
}

/// Starts listeners again that were refused.
class RefusedListeners : public IMesssageListener {
public:
    explicit RefusedListeners(std::vector<std::shared_ptr<HostSubscriber>> listeners)
        : listeners_(std::move(listeners)) {}

    ErrCode StartListener() override {
        for (const auto& listener : listeners_) {
            if (listener->IsRefused()) {
                listener->StartListener();
            }
        }
        return ERR_OK;
    }

    ErrCode StopListener() override { return ERR_OK; }

private:
    std::vector<std::shared_ptr<HostSubscriber>> listeners_;
};

}  // namespace

bool ListenerManagerAdapter::Init() {
    if (!StandbyServiceImpl::GetInstance()->IsAutomatic()) {
        return true;
    }
    const auto broadcasts = MakeSubscriber<BroadcastListener>(
        {CommonEventSupport::COMMON_EVENT_SCREEN_ON, CommonEventSupport::COMMON_EVENT_SCREEN_OFF,
         CommonEventSupport::COMMON_EVENT_CHARGING, CommonEventSupport::COMMON_EVENT_DISCHARGING,
         CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED, "COMMON_EVENT_TIMER_SA_ABILITY"});
    const auto clock = MakeSubscriber<ClockListener>(
        {CommonEventSupport::COMMON_EVENT_TIME_CHANGED, CommonEventSupport::COMMON_EVENT_TIMEZONE_CHANGED});
    messageListenerList_ = {broadcasts, std::make_shared<BackgroundTaskListener>(),
                            std::make_shared<ApplicationListener>(), std::make_shared<IdlePolicyListener>(), clock};
    eventListenerMap_[StandbyMessageType::HOST_REFRESH] =
        std::make_shared<RefusedListeners>(std::vector{broadcasts, clock});
    return true;
}

bool ListenerManagerAdapter::UnInit() {
    StopListener();
    messageListenerList_.clear();
    eventListenerMap_.clear();
    return true;
}

ErrCode ListenerManagerAdapter::StartListener() {
    for (const auto& listener : messageListenerList_) {
        listener->StartListener();
    }
    return ERR_OK;
}

ErrCode ListenerManagerAdapter::StopListener() {
    for (const auto& listener : messageListenerList_) {
        listener->StopListener();
    }
    return ERR_OK;
}

void ListenerManagerAdapter::HandleEvent(const StandbyMessage& message) {
    if (const auto listener = eventListenerMap_.find(message.eventId); listener != eventListenerMap_.end()) {
        listener->second->StartListener();
    }
}

void ListenerManagerAdapter::ShellDump(const std::vector<std::string>& /*args*/, std::string& /*result*/) {}

}  // namespace TARN::DevStandbyMgr
