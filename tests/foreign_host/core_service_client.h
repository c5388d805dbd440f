#pragma once

#include <cstdint>
#include <functional>

namespace TARN::Telephony {
class CoreServiceClient {
public:
    static CoreServiceClient& GetInstance();
    int32_t GetMaxSimCount();
    [[nodiscard]] int32_t SetRadioState(int32_t slotId, bool isOn, const std::function<void()>& callback);
};
}  // namespace TARN::Telephony
