#ifndef PLATFORM_CORE_SERVICE_CLIENT_H
#define PLATFORM_CORE_SERVICE_CLIENT_H

#include <cstdint>
#include <functional>
#include <optional>

#include "device.h"

namespace TARN::Telephony {

/// The telephony core service.
class CoreServiceClient {
public:
    using RadioCallback = std::function<void(int32_t result)>;

    virtual ~CoreServiceClient() = default;

    static CoreServiceClient& GetInstance() { return Device::Current().Modem(); }

    /// The number of SIM slots.
    virtual int32_t GetMaxSimCount() = 0;

    /// Switches the radio of one slot; `callback`, if any, hears of the end. Returns 0 when accepted.
    virtual int32_t SetRadioState(int32_t slotId, bool isOn, const RadioCallback& callback) = 0;

    /// Whether the radio of one slot is on; nothing when that cannot be told.
    virtual std::optional<bool> IsRadioOn(int32_t slotId) = 0;
};

}  // namespace TARN::Telephony

#endif  // PLATFORM_CORE_SERVICE_CLIENT_H
