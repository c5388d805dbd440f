#include "sensor_agent.h"

#include "device.h"
#include "sensor_service.h"

using TARN::Device;

int32_t GetAllSensors(SensorInfo** sensorInfos, int32_t* count) {
    return Device::Current().Sensors().GetAll(sensorInfos, count);
}

int32_t SubscribeSensor(int32_t sensorTypeId, const SensorUser* user) {
    return Device::Current().Sensors().Subscribe(sensorTypeId, user);
}

int32_t SetBatch(int32_t sensorTypeId, const SensorUser* user, int64_t samplingIntervalNs, int64_t reportIntervalNs) {
    return Device::Current().Sensors().SetBatch(sensorTypeId, user, samplingIntervalNs, reportIntervalNs);
}

int32_t ActivateSensor(int32_t sensorTypeId, const SensorUser* user) {
    return Device::Current().Sensors().Activate(sensorTypeId, user);
}

int32_t DeactivateSensor(int32_t sensorTypeId, const SensorUser* user) {
    return Device::Current().Sensors().Deactivate(sensorTypeId, user);
}

int32_t UnsubscribeSensor(int32_t sensorTypeId, const SensorUser* user) {
    return Device::Current().Sensors().Unsubscribe(sensorTypeId, user);
}
