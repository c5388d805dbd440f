#ifndef DEVICE_SIMULATED_PHONE_OBSERVER_H
#define DEVICE_SIMULATED_PHONE_OBSERVER_H

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "log_service.h"

namespace TARN::Simulated {

/// Watches what is done to a simulated phone.
class PhoneObserver {
public:
    virtual ~PhoneObserver() = default;

    /// Whether lines of a level are wanted.
    [[nodiscard]] virtual bool WantsLog(LogLevel level) const noexcept = 0;

    /// A log line was written.
    virtual void OnLog(const LogLine& line) = 0;

    /// An operation that changes something was called; `arguments` by name, sets sorted.
    virtual void OnCall(std::string_view operation, const nlohmann::ordered_json& arguments,
                        const nlohmann::ordered_json& result) = 0;

    /// One of the service's files holds other content now.
    virtual void OnFile(const std::string& /*path*/) {}
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_PHONE_OBSERVER_H
