#include "condition_watch.h"

#include <algorithm>
#include <ctime>
#include <utility>

#include "local_time.h"
#include "standby_constants.h"
#include "standby_service_impl.h"

namespace TARN::DevStandbyMgr {

namespace {

constexpr char kConditionTask[] = "standby_condition_task";
constexpr int64_t kMsPerDay = 86'400'000;
constexpr int32_t kMostDaysAhead = 3;  // a day may lack the hour, or be left out by its zone

/// The next time after `nowMs` at which the local clock shows `hour` o'clock.
int64_t NextHourMs(int64_t nowMs, int32_t hour) {
    std::tm local = LocalTime(nowMs);
    local.tm_hour = hour;
    local.tm_min = 0;
    local.tm_sec = 0;
    for (int32_t day = 0; day <= kMostDaysAhead; ++day) {
        std::tm candidate = local;
        candidate.tm_isdst = -1;
        const int64_t atMs = static_cast<int64_t>(std::mktime(&candidate)) * kMsPerSecond;
        if (atMs > nowMs) {
            return atMs;
        }
        ++local.tm_mday;
    }
    return nowMs + kMsPerDay;  // a clock beyond the calendar
}

}  // namespace

uint32_t ConditionAt(const StandbyPolicy& policy, int64_t wallMs) {
    const int32_t hour = LocalTime(wallMs).tm_hour;
    const int32_t start = policy.nightStartHour;
    const int32_t end = policy.nightEndHour;
    const bool isNight = start <= end ? hour >= start && hour < end : hour >= start || hour < end;
    return isNight ? ConditionType::NIGHT_STANDBY : ConditionType::DAY_STANDBY;
}

ConditionWatch::ConditionWatch(const StandbyConfig& config, std::shared_ptr<AppExecFwk::EventHandler> handler)
    : policy_(config.policy),
      isAutomatic_(config.mode == HostMode::AUTOMATIC),
      scripted_(ConditionType::DAY_STANDBY),
      tasks_(std::move(handler)) {}

uint32_t ConditionWatch::At(int64_t offsetMs) const {
    return isAutomatic_ ? ConditionAt(policy_, NowMs() + offsetMs) : scripted_;
}

void ConditionWatch::Start() {
    if (isAutomatic_) {
        isWatching_ = true;
        reported_ = At(0);
        WaitForChange();
    }
}

void ConditionWatch::Stop() {
    isWatching_ = false;
    tasks_.Remove(kConditionTask);
}

void ConditionWatch::OnClockChanged() {
    if (isWatching_) {
        Look();
    }
}

void ConditionWatch::Look() {
    const uint32_t condition = At(0);
    if (std::exchange(reported_, condition) != condition) {
        AAFwk::Want want;
        want.SetParam(RES_CTRL_CONDITION, static_cast<int32_t>(condition));
        StandbyServiceImpl::GetInstance()->DispatchEvent(
            StandbyMessage(StandbyMessageType::RES_CTRL_CONDITION_CHANGED, {}, std::move(want)));
    }
    WaitForChange();
}

void ConditionWatch::WaitForChange() {
    const int64_t nowMs = NowMs();
    const int64_t nextMs = std::min(NextHourMs(nowMs, policy_.nightStartHour), NextHourMs(nowMs, policy_.nightEndHour));
    tasks_.Post([this] { Look(); }, kConditionTask, nextMs - nowMs);
}

}  // namespace TARN::DevStandbyMgr
