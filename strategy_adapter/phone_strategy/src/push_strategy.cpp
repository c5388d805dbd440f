#include "push_strategy.h"

#include <utility>

#include "common_event_manager.h"
#include "phone_dump_words.h"
#include "phone_standby_message.h"
#include "phone_standby_vocabulary.h"
#include "standby_constants.h"
#include "standby_service_log.h"

namespace TARN::DevStandbyMgr {

void PushStrategy::HandleEvent(const StandbyMessage& message) {
    STANDBYSERVICE_LOGD("enter PushStrategy HandleEvent, eventId is %{public}d", message.eventId);
    if (message.eventId == StandbyMessageType::NET_IDLE_POLICY_TRANSIT) {
        OnNetIdlePolicyTransit(message);
    }
}

ErrCode PushStrategy::OnCreated() {
    STANDBYSERVICE_LOGI("PushStrategy is now OnCreated");
    static_cast<void>(ReportRestoreNetworkStatus());
    return PhoneStatus::OK;
}

ErrCode PushStrategy::OnDestroy() {
    STANDBYSERVICE_LOGI("PushStrategy is now OnDestroy");
    return PhoneStatus::OK;
}

void PushStrategy::OnNetIdlePolicyTransit(const StandbyMessage& message) {
    if (ParamsOf(message).GetBoolParam(NET_IDLE_POLICY_STATUS, false)) {
        static_cast<void>(ReportCtrlNetworkStatus(true));
    } else {
        static_cast<void>(ReportRestoreNetworkStatus());
    }
}

ErrCode PushStrategy::ReportCtrlNetworkStatus(bool isCtrl) {
    if (!Publish("ctrl_network_status", isCtrl)) {
        STANDBYSERVICE_LOGE("PublishCommonEvent for ctrl_network_status failed");
        return PhoneStatus::COMMON_EVENT_PUBLISH;
    }
    STANDBYSERVICE_LOGD("PublishCommonEvent for ctrl_network_status succeed");
    return PhoneStatus::OK;
}

ErrCode PushStrategy::ReportRestoreNetworkStatus() {
    if (!Publish("restore_network_status", true)) {
        STANDBYSERVICE_LOGE("PublishCommonEvent for restore_network_status failed");
        return PhoneStatus::COMMON_EVENT_PUBLISH;
    }
    STANDBYSERVICE_LOGD("PublishCommonEvent for restore_network_status succeed");
    return PhoneStatus::OK;
}

bool PushStrategy::Publish(const std::string& parameter, bool value) {
    AAFwk::Want want;
    want.SetAction(COMMON_EVENT_DEVICE_IDLE_CTRL_NETWORK);
    want.SetParam(parameter, value);
    return EventFwk::CommonEventManager::PublishCommonEvent(EventFwk::CommonEventData(std::move(want)));
}

void PushStrategy::ShellDump(const std::vector<std::string>& args, std::string& /*result*/) {
    if (IsWordAt(args, DUMP_SECOND_PARAM, "--restorectrlnetwork")) {
        static_cast<void>(ReportRestoreNetworkStatus());
    } else if (IsWordAt(args, DUMP_SECOND_PARAM, "--ctrlnetwork")) {
        static_cast<void>(ReportCtrlNetworkStatus(true));
    }
}

}  // namespace TARN::DevStandbyMgr
