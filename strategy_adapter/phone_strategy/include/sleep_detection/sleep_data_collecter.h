#ifndef SLEEP_DETECTION_SLEEP_DATA_COLLECTER_H
#define SLEEP_DETECTION_SLEEP_DATA_COLLECTER_H

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "event_handler.h"
#include "phone_standby_status.h"
#include "relaxed.h"
#include "sensor_agent_type.h"
#include "sleep_data_record.h"

namespace TARN::DevStandbyMgr {

/// Takes one-second snapshots of light and proximity and adds what else tells sleep. A snapshot for prediction
/// ends in SLEEP_COLLECT_FINISHED; one of the day votes on whether the proximity sensor can be trusted.
///
/// Runs on the handler's thread; the sensor callbacks arrive on the sensor service's and only overwrite the
/// latest readings. Owned by a shared pointer, which its tasks take.
class SleepDataCollecter : public std::enable_shared_from_this<SleepDataCollecter> {
public:
    SleepDataCollecter();
    virtual ~SleepDataCollecter() = default;

    /// The proximity of this snapshot, also kept in `mProximity`.
    virtual float GetProximity() = 0;

    /// Subscribes the sensors for one second, then saves what they told.
    void CollectSleepData(bool isDayCollect);

    /// The daytime proximity check: takes a snapshot if one is due and comes again by itself.
    void DayCollection();

    void SetScrOnCount(int32_t count) { scrOnCount = count; }
    [[nodiscard]] int32_t GetScrOnCount() const { return scrOnCount; }
    void SetUnlockTimestamp(int64_t timestampMs) { unlockTimestamp = timestampMs; }
    void SetScrOffStartTimestamp(int64_t timestampMs) { scrOffStartTimestamp = timestampMs; }

    static void AmbientLightCallback(SensorEvent* event);
    static void ProximityCallback(SensorEvent* event);

protected:
    /// The latest readings; -1.0 when there is none since the sensors were started.
    static Relaxed<float> currentAmbientLightData_;
    static Relaxed<float> currentProximityData_;

    float mProximity = -1.0F;
    bool isProximityError = false;
    float mLastProximity = -1.0F;  ///< kept by the dark-spell logic

private:
    void InitSensorUserMap();
    void StartMonitoring();
    [[nodiscard]] ErrCode StartSensor();
    void StopSensor();
    void SaveSleepData(bool isDayCollect);
    [[nodiscard]] SleepDataRecord SaveSleepCollectData();
    void UpdateUserStationaryDuration();
    void UpdateLight();
    int32_t GetLightDarkDuration();
    int32_t RestartDarkSpell(float proximity);
    [[nodiscard]] static int64_t GetNextAlarmClockTriggerTime();
    [[nodiscard]] bool IsMeetDayDataCollectCondition() const;
    void FinishDayCollect(SleepDataRecord& record);
    [[nodiscard]] float JudgeProximity() const;
    void CountDaySamples(SleepDataRecord& record) const;

    int32_t scrOnCount = 0;
    int64_t unlockTimestamp = -1;
    int64_t scrOffStartTimestamp = -1;
    int64_t lastCollectTime = 0;
    int64_t dayCollectTime = 0;
    bool lightDarkRestart = false;  ///< the dark spell begins at the next dark snapshot
    float mLight = -1.0F;
    float mLastLight = -1.0F;  ///< kept by the dark-spell logic; 50.0 marks a forced bright state
    bool lightSubstituted = false;
    std::vector<int64_t> proximityErrorTimes;
    std::vector<int64_t> proximityNormalTimes;
    int32_t userStationaryDuration = -1;
    int64_t curTimestamp = -1;
    int64_t lightDarkStartTime = -1;
    std::shared_ptr<AppExecFwk::EventHandler> handler_;
    std::map<int32_t, SensorUser> sensorUserMap_;
    bool isMonitoring = false;
};

}  // namespace TARN::DevStandbyMgr

#endif  // SLEEP_DETECTION_SLEEP_DATA_COLLECTER_H
