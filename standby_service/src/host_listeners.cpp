#include "host_listeners.h"

#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

#include "app_mgr_client.h"
#include "background_task_mgr_helper.h"
#include "battery_srv_client.h"
#include "common_event_manager.h"
#include "common_event_support.h"
#include "condition_watch.h"
#include "net_policy_client.h"
#include "power_mgr_client.h"
#include "standby_constants.h"
#include "standby_service_impl.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

namespace {

using BackgroundTaskMgr::BackgroundTaskMgrHelper;
using BackgroundTaskMgr::ContinuousTaskCallbackInfo;
using EventFwk::CommonEventManager;
using EventFwk::CommonEventSupport;

/// A listener of the service's own, which the phone may refuse.
class HostListener : public IMesssageListener {
public:
    /// Whether it was started, was refused, and was not stopped since.
    [[nodiscard]] bool IsRefused() const noexcept { return isRefused_; }

    /// Makes up for what was missed when a later start succeeds.
    virtual void CatchUp() {}

protected:
    /// Takes note of how a start ended; a refusal is a line in the log and is tried again.
    ErrCode Started(bool isAccepted, const char* what) {
        isRefused_ = !isAccepted;
        if (isRefused_) {
            STANDBYSERVICE_LOGE("%{public}s could not be had, tried again later", what);
            StandbyServiceImpl::GetInstance()->RefreshLater();
        }
        return isRefused_ ? ERR_COMMON_EVENT_SUBSCRIBE : ERR_OK;
    }

    bool isRefused_ = false;
};

/// A subscriber of the service's own.
class HostSubscriber : public EventFwk::CommonEventSubscriber,
                       public HostListener,
                       public std::enable_shared_from_this<HostSubscriber> {
public:
    using EventFwk::CommonEventSubscriber::CommonEventSubscriber;

    ErrCode StartListener() override {
        isListening_ = true;
        return Started(CommonEventManager::SubscribeCommonEvent(shared_from_this()), "the system's broadcasts");
    }

    ErrCode StopListener() override {
        isListening_ = false;
        if (std::exchange(isRefused_, false) || CommonEventManager::UnSubscribeCommonEvent(shared_from_this())) {
            return ERR_OK;
        }
        STANDBYSERVICE_LOGE("the system's broadcasts could not be unsubscribed from");
        return ERR_COMMON_EVENT_UNSUBSCRIBE;
    }

    void OnReceiveEvent(const EventFwk::CommonEventData& data) final {
        const auto service = StandbyServiceImpl::GetInstance();
        if (isListening_ && service != nullptr) {  // one that could not be unsubscribed hears on
            OnBroadcast(*service, data.GetWant());
        }
    }

protected:
    virtual void OnBroadcast(StandbyServiceImpl& service, const AAFwk::Want& want) = 0;

private:
    std::atomic<bool> isListening_ = false;
};

/// Hands system broadcasts on as COMMON_EVENT.
class BroadcastListener : public HostSubscriber {
public:
    using HostSubscriber::HostSubscriber;

    /// Tells charger and screen as they are now, whose broadcasts may have been missed.
    void CatchUp() override {
        const bool isPlugged = PowerMgr::BatterySrvClient::GetInstance().GetPluggedType() != 0;
        Tell(isPlugged ? CommonEventSupport::COMMON_EVENT_CHARGING : CommonEventSupport::COMMON_EVENT_DISCHARGING);
        if (const std::optional<bool> isOn = PowerMgr::PowerMgrClient::GetInstance().IsScreenOn()) {
            Tell(*isOn ? CommonEventSupport::COMMON_EVENT_SCREEN_ON : CommonEventSupport::COMMON_EVENT_SCREEN_OFF);
        }
    }

protected:
    void OnBroadcast(StandbyServiceImpl& service, const AAFwk::Want& want) override {
        service.DispatchEvent(StandbyMessage(StandbyMessageType::COMMON_EVENT, want.GetAction(), want));
    }

private:
    static void Tell(std::string_view action) {
        StandbyServiceImpl::GetInstance()->DispatchEvent(
            StandbyMessage(StandbyMessageType::COMMON_EVENT, std::string(action), AAFwk::Want()));
    }
};

/// Has the condition looked at when somebody sets the clock.
class ClockListener : public HostSubscriber {
public:
    using HostSubscriber::HostSubscriber;

    void CatchUp() override { StandbyServiceImpl::GetInstance()->GetConditionWatch().OnClockChanged(); }

protected:
    void OnBroadcast(StandbyServiceImpl& service, const AAFwk::Want& /*want*/) override {
        service.GetHandler()->PostTask([] {
            if (const auto running = StandbyServiceImpl::GetInstance()) {
                running->GetConditionWatch().OnClockChanged();
            }
        });
    }
};

/// Tells which continuous tasks start, and when the last of a type is over.
class BackgroundTaskListener : public HostListener, public std::enable_shared_from_this<BackgroundTaskListener> {
public:
    ErrCode StartListener() override {
        BackgroundTaskMgrHelper::ObserveContinuousTasks(
            [self = weak_from_this()](const ContinuousTaskCallbackInfo& task, bool started) {
                if (const auto listener = self.lock()) {
                    listener->OnTask(task, started);
                }
            });
        std::vector<std::shared_ptr<ContinuousTaskCallbackInfo>> running;
        const bool isTold = BackgroundTaskMgrHelper::GetContinuousTaskApps(running) == ERR_OK;
        for (const auto& task : running) {
            if (task != nullptr) {
                OnTask(*task, true);
            }
        }
        return Started(isTold, "the continuous tasks");
    }

    ErrCode StopListener() override {
        BackgroundTaskMgrHelper::ObserveContinuousTasks(nullptr);
        isRefused_ = false;
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
            return tasks_.insert(task).second;
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
std::shared_ptr<HostListener> MakeSubscriber(std::span<const std::string_view> actions) {
    EventFwk::MatchingSkills skills;
    for (const std::string_view action : actions) {
        skills.AddEvent(action);
    }
    return std::make_shared<Listener>(EventFwk::CommonEventSubscribeInfo(std::move(skills)));
}

/// Starts listeners again that were refused.
class RefusedListeners : public IMesssageListener {
public:
    explicit RefusedListeners(std::vector<std::shared_ptr<HostListener>> listeners)
        : listeners_(std::move(listeners)) {}

    ErrCode StartListener() override {
        for (const auto& listener : listeners_) {
            if (listener->IsRefused() && listener->StartListener() == ERR_OK) {
                listener->CatchUp();
            }
        }
        return ERR_OK;
    }

    ErrCode StopListener() override { return ERR_OK; }

private:
    std::vector<std::shared_ptr<HostListener>> listeners_;
};

}  // namespace

std::span<const std::string_view> StrategyBroadcasts() noexcept {
    static constexpr std::array kActions = {CommonEventSupport::COMMON_EVENT_SCREEN_ON,
                                            CommonEventSupport::COMMON_EVENT_SCREEN_OFF,
                                            CommonEventSupport::COMMON_EVENT_CHARGING,
                                            CommonEventSupport::COMMON_EVENT_DISCHARGING,
                                            CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED,
                                            std::string_view("COMMON_EVENT_TIMER_SA_ABILITY")};
    return kActions;
}

std::span<const std::string_view> ClockBroadcasts() noexcept {
    static constexpr std::array kActions = {CommonEventSupport::COMMON_EVENT_TIME_CHANGED,
                                            CommonEventSupport::COMMON_EVENT_TIMEZONE_CHANGED};
    return kActions;
}

HostListeners MakeHostListeners() {
    const auto broadcasts = MakeSubscriber<BroadcastListener>(StrategyBroadcasts());
    const auto clock = MakeSubscriber<ClockListener>(ClockBroadcasts());
    const auto tasks = std::make_shared<BackgroundTaskListener>();
    return {{broadcasts, tasks, std::make_shared<ApplicationListener>(), std::make_shared<IdlePolicyListener>(), clock},
            std::make_shared<RefusedListeners>(std::vector<std::shared_ptr<HostListener>>{broadcasts, tasks, clock})};
}

}  // namespace TARN::DevStandbyMgr
