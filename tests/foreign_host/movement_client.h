#pragma once

#include <cstdint>

namespace TARN::Msdp {
enum class MovementType : int32_t {};
enum class MovementValue : int32_t {};

struct MovementData {
    MovementValue value;
    int64_t timestamp;
};

class MovementClient {
public:
    static MovementClient& GetInstance();
    MovementData GetMovementData(MovementType type);
};
}  // namespace TARN::Msdp
