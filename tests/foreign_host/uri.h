#pragma once

#include <string>

namespace TARN {
class Uri {
public:
    explicit Uri(const std::string& text);
};
}  // namespace TARN
