#ifndef SLEEP_DETECTION_SLEEP_DETECTION_STRATEGY_H
#define SLEEP_DETECTION_SLEEP_DETECTION_STRATEGY_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "event_handler.h"
#include "ibase_strategy.h"
#include "phone_standby_status.h"
#include "sleep_data_collecter.h"
#include "sleep_data_record.h"
#include "time_provider_ext.h"
#include "user_sleep_predict.h"

namespace TARN::DevStandbyMgr {

/// Decides whether the user is asleep and tells everybody.
///
/// While the screen is off a loop of ten seconds has a snapshot taken every ten minutes of the night. Each
/// snapshot is judged by two models: the baseline, and an enhanced one that is stricter and takes over for
/// three days once the user proved the baseline wrong. Each change of the verdict is published.
///
/// Listens to: COMMON_EVENT (screen, unlock), SLEEP_COLLECT_FINISHED, BG_TASK_STATUS_CHANGED.
/// Commands: the collector, the user-sleep broadcast and its copy as COMMON_EVENT.
class SleepDetectionStrategy : public IBaseStrategy, public std::enable_shared_from_this<SleepDetectionStrategy> {
public:
    SleepDetectionStrategy();
    void HandleEvent(const StandbyMessage& message) override;
    ErrCode OnCreated() override;
    ErrCode OnDestroy() override;
    void ShellDump(const std::vector<std::string>& args, std::string& result) override;
    ~SleepDetectionStrategy() override = default;

    /// Publishes the user's sleep state, and on success dispatches the same as COMMON_EVENT. `wakeupTime` is
    /// in wall-clock milliseconds, -1 when unknown.
    void SendUserSleepAICommonEvent(bool isSleep, int64_t wakeupTime);

private:
    void HandleCommonEvent(const StandbyMessage& message);
    void HandleScrOnAction();
    void HandleEventFinishCollect(const StandbyMessage& message);
    void HandleBgTaskStatusChange(const StandbyMessage& message);
    void Predict();
    [[nodiscard]] bool IsMeetDataCollectCondition();
    void JudgeModels(bool isWakeupNear);
    void CombineModels();
    [[nodiscard]] bool IsOnActiveUsing() const;
    void UpdateUserSleepState(bool isSleep, int64_t wakeupTime);
    void DistrustBaseline();
    static void DumpShowDetailInfo(std::string& result);
    void DumpSleepTest(const std::vector<std::string>& args, std::string& result);

    bool isAudioRunning_ = false;
    bool isCalling_ = false;
    bool isSporting_ = false;
    bool isUserSleep_ = false;  ///< the published state
    bool InSleepTestMode = false;
    bool isSleep_ = false;  ///< the combined decision of the latest collection
    bool isBaselineSleep_ = false;
    bool isEnhanceSleep_ = false;
    bool IsEnhanceModelBetter = false;
    bool isScreenOn_ = false;
    int64_t enhanceModelBetterTime_ = 0;
    int64_t lastCollectTime_ = 0;
    int32_t baselineResult_ = 0;  ///< 1 asleep, 0 awake, -2 overruled
    int64_t wakeupTime_ = -1;
    SleepDataRecord lastSleepData_;
    SleepDataRecord curSleepData_;
    DayHourMemory dayHour_;
    std::shared_ptr<SleepDataCollecter> sleepDataCollecter_;
    std::shared_ptr<UserSleepPredict> userSleepPredict_;
    std::shared_ptr<AppExecFwk::EventHandler> handler_;
};

}  // namespace TARN::DevStandbyMgr

#endif  // SLEEP_DETECTION_SLEEP_DETECTION_STRATEGY_H
