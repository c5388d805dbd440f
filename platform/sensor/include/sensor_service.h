#ifndef PLATFORM_SENSOR_SERVICE_H
#define PLATFORM_SENSOR_SERVICE_H

#include "sensor_agent_type.h"

namespace TARN::Sensors {

/// What stands behind the sensor agent's C interface; the operations are those of sensor_agent.h.
class SensorService {
public:
    virtual ~SensorService() = default;

    virtual int32_t GetAll(SensorInfo** sensorInfos, int32_t* count) = 0;
    virtual int32_t Subscribe(int32_t sensorTypeId, const SensorUser* user) = 0;
    virtual int32_t SetBatch(int32_t sensorTypeId, const SensorUser* user, int64_t samplingIntervalNs,
                             int64_t reportIntervalNs) = 0;
    virtual int32_t Activate(int32_t sensorTypeId, const SensorUser* user) = 0;
    virtual int32_t Deactivate(int32_t sensorTypeId, const SensorUser* user) = 0;
    virtual int32_t Unsubscribe(int32_t sensorTypeId, const SensorUser* user) = 0;
};

}  // namespace TARN::Sensors

#endif  // PLATFORM_SENSOR_SERVICE_H
