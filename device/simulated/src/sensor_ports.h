#ifndef DEVICE_SIMULATED_SENSOR_PORTS_H
#define DEVICE_SIMULATED_SENSOR_PORTS_H

#include <map>
#include <vector>

#include "phone_core.h"
#include "sensor_service.h"

namespace TARN::Simulated {

/// Ambient light and proximity: a subscribed, active sensor reports when it is activated and at every change
/// of its fact.
class SensorHub : public Sensors::SensorService {
public:
    explicit SensorHub(PhoneCore& core) : core_(core) {}
    int32_t GetAll(SensorInfo** sensorInfos, int32_t* count) override;
    int32_t Subscribe(int32_t sensorTypeId, const SensorUser* user) override;
    int32_t SetBatch(int32_t sensorTypeId, const SensorUser* user, int64_t samplingIntervalNs,
                     int64_t reportIntervalNs) override;
    int32_t Activate(int32_t sensorTypeId, const SensorUser* user) override;
    int32_t Deactivate(int32_t sensorTypeId, const SensorUser* user) override;
    int32_t Unsubscribe(int32_t sensorTypeId, const SensorUser* user) override;

    /// Has a sensor report its fact, if it is active and there is something to report.
    void Report(int32_t sensorTypeId);

    void DropAll() { subscriptions_.clear(); }

private:
    struct Subscription {
        RecordSensorCallback callback = nullptr;
        bool isActive = false;
        int32_t refusal = 0;  ///< the code with which the subscription was refused
    };

    int32_t Show(std::string_view operation, int32_t sensorTypeId, int32_t refusal = 0);

    PhoneCore& core_;
    std::vector<SensorInfo> infos_;
    std::map<int32_t, Subscription> subscriptions_;
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_SENSOR_PORTS_H
