#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace TARN::AppExecFwk {
class EventHandler {
public:
    enum class Priority : uint32_t {};
    [[nodiscard]] bool PostTask(const std::function<void()>& task, const std::string& name, int64_t delay);
    [[nodiscard]] bool PostTask(const std::function<void()>& task, const std::string& name, int64_t delay,
                                Priority priority);
    void RemoveTask(const std::string& name);
};
}  // namespace TARN::AppExecFwk
