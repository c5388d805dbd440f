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

    /// The least level of which log lines are wanted, NONE for no lines at all; asked when the phone is installed.
    [[nodiscard]] virtual LogLevel LeastLog() const noexcept = 0;

    /// A log line of a wanted level was written.
    virtual void OnLog(const LogLine& line) = 0;

    /// Whether calls of an operation are wanted; only then they are put together and shown.
    [[nodiscard]] virtual bool WantsCall(std::string_view /*operation*/) const noexcept { return true; }

    /// An operation that changes something was called; `arguments` by name, sets sorted.
    virtual void OnCall(std::string_view operation, const nlohmann::ordered_json& arguments,
                        const nlohmann::ordered_json& result) = 0;

    /// One of the service's files holds other content now.
    virtual void OnFile(const std::string& /*path*/) {}
};

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_PHONE_OBSERVER_H
