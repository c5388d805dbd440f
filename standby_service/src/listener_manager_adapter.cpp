#include "listener_manager_adapter.h"

#include "app_mgr_client.h"
#include "background_task_mgr_helper.h"
#include "common_event_manager.h"
#include "common_event_support.h"
#include "net_policy_client.h"
#include "standby_constants.h"
#include "standby_service_impl.h"

namespace TARN::DevStandbyMgr {

namespace {

using BackgroundTaskMgr::BackgroundTaskMgrHelper;
using BackgroundTaskMgr::ContinuousTaskCallbackInfo;
using EventFwk::CommonEventManager;
using EventFwk::CommonEventSupport;

void Dispatch(int32_t eventId, AAFwk::Want want) {
    StandbyServiceImpl::GetInstance()->DispatchEvent(StandbyMessage(eventId, {}, std::move(want)));
}

/// Hands system broadcasts on as COMMON_EVENT.
class BroadcastListener : public EventFwk::CommonEventSubscriber,
                          public IMesssageListener,
                          public std::enable_shared_from_this<BroadcastListener> {
public:
    using EventFwk::CommonEventSubscriber::CommonEventSubscriber;

    void OnReceiveEvent(const EventFwk::CommonEventData& data) override {
        const AAFwk::Want& want = data.GetWant();
        StandbyServiceImpl::GetInstance()->DispatchEvent(
            StandbyMessage(StandbyMessageType::COMMON_EVENT, want.GetAction(), want));
    }

    ErrCode StartListener() override {
        return CommonEventManager::SubscribeCommonEvent(shared_from_this()) ? ERR_OK : ERR_COMMON_EVENT_SUBSCRIBE;
    }

    ErrCode StopListener() override {
        return CommonEventManager::UnSubscribeCommonEvent(shared_from_this()) ? ERR_OK : ERR_COMMON_EVENT_UNSUBSCRIBE;
    }
};

/// Tells which continuous tasks run, start and stop.
class BackgroundTaskListener : public IMesssageListener {
public:
    ErrCode StartListener() override {
        BackgroundTaskMgrHelper::ObserveContinuousTasks(Report);
        std::vector<std::shared_ptr<ContinuousTaskCallbackInfo>> running;
        BackgroundTaskMgrHelper::GetContinuousTaskApps(running);
        for (const auto& task : running) {
            Report(*task, true);
        }
        return ERR_OK;
    }

    ErrCode StopListener() override {
        BackgroundTaskMgrHelper::ObserveContinuousTasks(nullptr);
        return ERR_OK;
    }

private:
    static void Report(const ContinuousTaskCallbackInfo& task, bool started) {
        AAFwk::Want want;
        want.SetParam("typeId", static_cast<int32_t>(task.GetTypeId())).SetParam("started", started);
        want.SetParam("uid", task.GetCreatorUid());
        Dispatch(StandbyMessageType::BG_TASK_STATUS_CHANGED, std::move(want));
    }
};

/// Tells which applications come to and leave the foreground.
class ForegroundListener : public IMesssageListener {
public:
    ErrCode StartListener() override {
        AppExecFwk::AppMgrClient::GetInstance().ObserveForeground([](const AppExecFwk::AppStateData& app) {
            AAFwk::Want want;
            want.SetParam("uid", app.uid).SetParam("pid", app.pid).SetParam("name", app.bundleName);
            want.SetParam("isForeground", app.isForeground);
            Dispatch(StandbyMessageType::PROCESS_STATE_CHANGED, std::move(want));
        });
        return ERR_OK;
    }

    ErrCode StopListener() override {
        AppExecFwk::AppMgrClient::GetInstance().ObserveForeground(nullptr);
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
            Dispatch(StandbyMessageType::NET_IDLE_POLICY_TRANSIT, std::move(want));
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

std::shared_ptr<IMesssageListener> MakeBroadcastListener() {
    EventFwk::MatchingSkills skills;
    skills.AddEvent(CommonEventSupport::COMMON_EVENT_SCREEN_ON);
    skills.AddEvent(CommonEventSupport::COMMON_EVENT_SCREEN_OFF);
    skills.AddEvent(CommonEventSupport::COMMON_EVENT_CHARGING);
    skills.AddEvent(CommonEventSupport::COMMON_EVENT_DISCHARGING);
    skills.AddEvent(CommonEventSupport::COMMON_EVENT_POWER_SAVE_MODE_CHANGED);
    skills.AddEvent("COMMON_EVENT_TIMER_SA_ABILITY");
    return std::make_shared<BroadcastListener>(EventFwk::CommonEventSubscribeInfo(std::move(skills)));
}

}  // namespace

bool ListenerManagerAdapter::Init() {
    if (StandbyServiceImpl::GetInstance()->IsAutomatic()) {
        messageListenerList_.push_back(MakeBroadcastListener());
        messageListenerList_.push_back(std::make_shared<BackgroundTaskListener>());
        messageListenerList_.push_back(std::make_shared<ForegroundListener>());
        messageListenerList_.push_back(std::make_shared<IdlePolicyListener>());
    }
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
