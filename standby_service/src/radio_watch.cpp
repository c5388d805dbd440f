#include "radio_watch.h"

#include <utility>

#include "common_event_support.h"
#include "device.h"
#include "local_time.h"
#include "power_mgr_client.h"

namespace TARN::DevStandbyMgr {

namespace {

using EventFwk::CommonEventSupport;

constexpr char kLookTask[] = "standby_radio_watch_task";
constexpr int64_t kScreenOnMs = 60 * kMsPerSecond;

bool HasPowerOff(const StandbyConfig& config) {
    const auto found = config.halfHourSwitches.find("poweroff");
    return found != config.halfHourSwitches.end() && found->second;
}

}  // namespace

RadioWatch::RadioWatch(const StandbyConfig& config, std::shared_ptr<AppExecFwk::EventHandler> handler)
    : ledger_(Device::Current().Radios()),
      retryMs_(config.policy.retryAfterSeconds * kMsPerSecond),
      isPowerOffAlive_(HasPowerOff(config)),
      tasks_(std::move(handler)) {}

void RadioWatch::Start() {
    if (ledger_ != nullptr) {
        isScreenOn_ = PowerMgr::PowerMgrClient::GetInstance().IsScreenOn().value_or(true);
        Look();
    }
}

void RadioWatch::Stop() {
    tasks_.Remove(kLookTask);
    isLookWaiting_ = false;
}

void RadioWatch::OnUnload() {
    isLookWaiting_ = false;
    isUserAsleep_ = false;
}

void RadioWatch::OnDelivered(const StandbyMessage& message) {
    if (ledger_ == nullptr) {
        return;
    }
    if (message.eventId == StandbyMessageType::USER_SLEEP_STATE_CHANGED) {
        isUserAsleep_ = message.Params().GetBoolParam("isSleep", false);
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_ON) {
        isScreenOn_ = true;
    } else if (message.action == CommonEventSupport::COMMON_EVENT_SCREEN_OFF) {
        isScreenOn_ = false;
        Stop();
    }
    if (isScreenOn_ && !isLookWaiting_ && ledger_->HoldsForgotten(Wanted())) {
        LookIn(kScreenOnMs);
    }
}

/// Whatever has them off, the strategy of long screen-offs brings all radios back when the screen goes on. Without it a
/// sleeping user's Bluetooth stays off until the user wakes.
RadioLedger::WantedOff RadioWatch::Wanted() const noexcept {
    return isUserAsleep_ && !isPowerOffAlive_ ? RadioLedger::WantedOff::BLUETOOTH : RadioLedger::WantedOff::NOTHING;
}

void RadioWatch::Look() {
    ledger_->SwitchOnForgotten(Wanted());
    if (isScreenOn_ && ledger_->HoldsForgotten(Wanted())) {
        LookIn(retryMs_);
    }
}

void RadioWatch::LookIn(int64_t delayMs) {
    isLookWaiting_ = true;
    tasks_.Post(
        [this] {
            isLookWaiting_ = false;
            Look();
        },
        kLookTask, delayMs);
}

}  // namespace TARN::DevStandbyMgr
