#include "sensor_ports.h"

#include <cstdio>

namespace TARN::Simulated {

int32_t SensorHub::Show(std::string_view operation, int32_t sensorTypeId, int32_t refusal) {
    const int32_t fault = core_.Fault(operation);
    const int32_t code = fault != 0 ? fault : refusal;
    core_.Show(
        operation,
        [sensorTypeId] {
            nlohmann::ordered_json arguments = nlohmann::ordered_json::object();
            arguments.emplace("sensor", sensorTypeId);  // one by one: a list in braces is copied
            return arguments;
        },
        code);
    return code;
}

int32_t SensorHub::GetAll(SensorInfo** sensorInfos, int32_t* count) {
    if (const int32_t code = core_.Fault("SensorAgent.GetAllSensors"); code != 0) {
        return code;
    }
    infos_.clear();
    for (const int32_t type : core_.facts.sensors) {
        SensorInfo info{};
        std::snprintf(info.sensorName, sizeof info.sensorName, "simulated sensor %d", type);
        info.sensorId = type;
        info.sensorTypeId = type;
        infos_.push_back(info);
    }
    *sensorInfos = infos_.data();
    *count = static_cast<int32_t>(infos_.size());
    return 0;
}

int32_t SensorHub::Subscribe(int32_t sensorTypeId, const SensorUser* user) {
    const int32_t code = Show("SensorAgent.SubscribeSensor", sensorTypeId);
    const auto [subscription, isFirst] = subscriptions_.try_emplace(sensorTypeId);
    if (code == 0) {
        subscription->second.callback = user->callback;  // one that is still active stays so
        subscription->second.refusal = 0;
    } else if (isFirst || subscription->second.refusal != 0) {
        subscription->second.refusal = code;  // an earlier subscription stays as it is
    }
    return code;
}

int32_t SensorHub::SetBatch(int32_t sensorTypeId, const SensorUser* /*user*/, int64_t /*samplingIntervalNs*/,
                            int64_t /*reportIntervalNs*/) {
    return Show("SensorAgent.SetBatch", sensorTypeId);
}

int32_t SensorHub::Activate(int32_t sensorTypeId, const SensorUser* /*user*/) {
    const int32_t code = Show("SensorAgent.ActivateSensor", sensorTypeId);
    if (const auto found = subscriptions_.find(sensorTypeId); code == 0 && found != subscriptions_.end()) {
        found->second.isActive = true;
        Report(sensorTypeId);
    }
    return code;
}

int32_t SensorHub::Deactivate(int32_t sensorTypeId, const SensorUser* /*user*/) {
    const int32_t code = Show("SensorAgent.DeactivateSensor", sensorTypeId);
    if (const auto found = subscriptions_.find(sensorTypeId); code == 0 && found != subscriptions_.end()) {
        found->second.isActive = false;
    }
    return code;
}

int32_t SensorHub::Unsubscribe(int32_t sensorTypeId, const SensorUser* /*user*/) {
    const auto found = subscriptions_.find(sensorTypeId);
    const int32_t refusal = found == subscriptions_.end() ? 0 : found->second.refusal;
    const int32_t code = Show("SensorAgent.UnsubscribeSensor", sensorTypeId, refusal);
    if (code == 0 && found != subscriptions_.end()) {
        subscriptions_.erase(found);
    }
    return code;
}

void SensorHub::Report(int32_t sensorTypeId) {
    const bool isLight = sensorTypeId == SENSOR_TYPE_ID_AMBIENT_LIGHT;
    if (!isLight && sensorTypeId != SENSOR_TYPE_ID_PROXIMITY) {
        return;
    }
    const std::optional<float>& fact = isLight ? core_.facts.light : core_.facts.proximity;
    const auto found = subscriptions_.find(sensorTypeId);
    if (!fact || found == subscriptions_.end() || !found->second.isActive || found->second.callback == nullptr) {
        return;
    }
    AmbientLightData light{isLight ? *fact : 0.0F, 0, 0};
    ProximityData proximity{*fact};
    SensorEvent event{};
    event.sensorTypeId = sensorTypeId;
    event.timestamp = core_.BootNsAt(core_.time.NowMs());
    event.data = isLight ? reinterpret_cast<uint8_t*>(&light) : reinterpret_cast<uint8_t*>(&proximity);
    event.dataLen = isLight ? sizeof light : sizeof proximity;
    found->second.callback(&event);
}

}  // namespace TARN::Simulated
