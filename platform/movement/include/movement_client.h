#ifndef PLATFORM_MOVEMENT_CLIENT_H
#define PLATFORM_MOVEMENT_CLIENT_H

#include <cstdint>
#include <functional>

#include "device.h"

namespace TARN::Msdp {

/// Movement types that the service tells apart; this phone asks for stillness only.
enum class MovementType : int32_t { TYPE_STILL = 4 };

enum class MovementValue : int32_t { VALUE_INVALID = -1, VALUE_NONE = 0, VALUE_ENTER = 1, VALUE_EXIT = 2 };

struct MovementData {
    MovementType type = MovementType::TYPE_STILL;
    MovementValue value = MovementValue::VALUE_INVALID;
    int64_t timestamp = 0;  ///< boot nanoseconds at which the value began to hold
};

/// The movement service.
class MovementClient {
public:
    using Observer = std::function<void(const MovementData&)>;

    virtual ~MovementClient() = default;

    static MovementClient& GetInstance() { return Device::Current().Movement(); }

    /// The latest value of one movement type; VALUE_INVALID when the service does not answer.
    virtual MovementData GetMovementData(MovementType type) = 0;

    /// Calls `observer` at every change, until the next call with another one; an empty observer ends it.
    /// Calls arrive on the service's thread. The call waits until the earlier observer does not run any more,
    /// unless it comes from within it.
    virtual void Observe(Observer observer) = 0;
};

}  // namespace TARN::Msdp

#endif  // PLATFORM_MOVEMENT_CLIENT_H
