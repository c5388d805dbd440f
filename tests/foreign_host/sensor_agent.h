#pragma once

#include "sensor_agent_type.h"

extern "C" {
[[nodiscard]] int32_t GetAllSensors(SensorInfo** sensorInfos, int32_t* count);
[[nodiscard]] int32_t SubscribeSensor(int32_t sensorTypeId, const SensorUser* user);
[[nodiscard]] int32_t SetBatch(int32_t sensorTypeId, const SensorUser* user, int64_t sampling, int64_t reporting);
[[nodiscard]] int32_t ActivateSensor(int32_t sensorTypeId, const SensorUser* user);
[[nodiscard]] int32_t DeactivateSensor(int32_t sensorTypeId, const SensorUser* user);
[[nodiscard]] int32_t UnsubscribeSensor(int32_t sensorTypeId, const SensorUser* user);
}
