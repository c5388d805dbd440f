#ifndef DEVICE_SIMULATED_OPERATIONS_H
#define DEVICE_SIMULATED_OPERATIONS_H

#include <string_view>

namespace TARN::Simulated {

/// Whether an operation of this name ("Class.Method") exists and can be made to fail.
[[nodiscard]] bool IsKnownOperation(std::string_view operation);

}  // namespace TARN::Simulated

#endif  // DEVICE_SIMULATED_OPERATIONS_H
