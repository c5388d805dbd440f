#pragma once

#include <cstdint>

struct SensorInfo {
    int32_t sensorTypeId;
};
struct SensorEvent {
    uint8_t* data;
    uint32_t dataLen;
};
struct SensorUser {
    void (*callback)(SensorEvent* event);
};
