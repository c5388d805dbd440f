#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace TARN::ResourceSchedule {
class ResSchedClient {
public:
    static ResSchedClient& GetInstance();
    [[nodiscard]] int32_t KillProcess(const std::unordered_map<std::string, std::string>& processInfo);
};
}  // namespace TARN::ResourceSchedule
