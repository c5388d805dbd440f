#ifndef PLATFORM_SENSOR_AGENT_TYPE_H
#define PLATFORM_SENSOR_AGENT_TYPE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum SensorTypeId { SENSOR_TYPE_ID_AMBIENT_LIGHT = 5, SENSOR_TYPE_ID_PROXIMITY = 12 };

/// One sensor of the phone.
typedef struct SensorInfo {
    char sensorName[128];
    int32_t sensorId;
    int32_t sensorTypeId;
} SensorInfo;

/// One reading: `data` points at the record of the sensor's type, `dataLen` bytes long.
typedef struct SensorEvent {
    int32_t sensorTypeId;
    int64_t timestamp;
    uint8_t* data;
    uint32_t dataLen;
} SensorEvent;

typedef void (*RecordSensorCallback)(SensorEvent* event);

/// Who receives a sensor's readings.
typedef struct SensorUser {
    char name[128];
    RecordSensorCallback callback;
} SensorUser;

/// Ambient light: intensity in lux.
typedef struct AmbientLightData {
    float intensity;
    int32_t colorTemperature;
    int32_t infraredLuminance;
} AmbientLightData;

/// Proximity: distance as the sensor tells it, 0 when covered.
typedef struct ProximityData {
    float distance;
} ProximityData;

#ifdef __cplusplus
}
#endif

#endif  // PLATFORM_SENSOR_AGENT_TYPE_H
