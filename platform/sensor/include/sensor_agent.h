#ifndef PLATFORM_SENSOR_AGENT_H
#define PLATFORM_SENSOR_AGENT_H

#include "sensor_agent_type.h"

#ifdef __cplusplus
extern "C" {
#endif

/// The sensor agent. Every operation returns 0 on success. Readings arrive on the sensor service's thread
/// between ActivateSensor and DeactivateSensor of a subscribed sensor. Deactivating and unsubscribing wait until a
/// callback of the sensor that runs is done, unless they come from within it.

/// Points `sensorInfos` at the phone's sensors, which stay the agent's own, and counts them.
int32_t GetAllSensors(SensorInfo** sensorInfos, int32_t* count);
int32_t SubscribeSensor(int32_t sensorTypeId, const SensorUser* user);
int32_t SetBatch(int32_t sensorTypeId, const SensorUser* user, int64_t samplingIntervalNs, int64_t reportIntervalNs);
int32_t ActivateSensor(int32_t sensorTypeId, const SensorUser* user);
int32_t DeactivateSensor(int32_t sensorTypeId, const SensorUser* user);
int32_t UnsubscribeSensor(int32_t sensorTypeId, const SensorUser* user);

#ifdef __cplusplus
}
#endif

#endif  // PLATFORM_SENSOR_AGENT_H
