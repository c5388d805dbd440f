#pragma once

#include <cstdint>
#include <string>

namespace TARN::DevStandbyMgr {
extern const std::string CURRENT_STATE;
extern const std::string PREVIOUS_STATE;
extern const std::string CURRENT_PHASE;
extern const std::string RES_CTRL_CONDITION;
extern const std::string SCR_OFF_HALF_HOUR_STATUS;
extern const std::string NET_IDLE_POLICY_STATUS;
extern const std::string MESSAGE_ENABLE;
extern const std::string MESSAGE_INTERVAL;
extern const std::string BG_TASK_TYPE;
extern const std::string BG_TASK_RESOURCE_STATUS;
extern const std::string BG_TASK_BUNDLE_NAME;
extern const int64_t SENSOR_REPORTING_RATE;
extern const int64_t SENSOR_SAMPLING_RATE;

extern const int32_t DUMP_FIRST_PARAM;
extern const int32_t DUMP_SECOND_PARAM;
extern const int32_t DUMP_THIRD_PARAM;
extern const int32_t DUMP_FOURTH_PARAM;
extern const int32_t DUMP_FIFTH_PARAM;
extern const std::string DUMP_DETAIL_INFO;
extern const std::string DUMP_STRATGY_DETAIL;
extern const std::string DUMP_SIMULATE_SENSOR;
extern const std::string DUMP_POWEROFF_STRATEGY;

extern int32_t STANDBT_MODE;

struct StandbyState {
    enum { MAINTENANCE = 3, SLEEP };
};
struct StandbyPhase {
    enum { APP_RES_DEEP = 1 };
};
}  // namespace TARN::DevStandbyMgr
