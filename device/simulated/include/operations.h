#ifndef DEVICE_SIMULATED_OPERATIONS_H
#define DEVICE_SIMULATED_OPERATIONS_H

#include <span>
#include <string_view>

namespace TARN::Simulated {

/// Whether an operation of this name ("Class.Method") exists and can be made to fail.
[[nodiscard]] bool IsKnownOperation(std::string_view operation);

/// The names of all of them, sorted.
[[nodiscard]] std::span<const std::string_view> Operations() noexcept;

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_OPERATIONS_H
