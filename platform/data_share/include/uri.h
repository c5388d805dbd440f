#ifndef PLATFORM_URI_H
#define PLATFORM_URI_H

#include <string>
#include <utility>

namespace TARN {

/// A uniform resource identifier, kept as its text.
class Uri {
public:
    explicit Uri(std::string text) : text_(std::move(text)) {}

    [[nodiscard]] const std::string& ToString() const noexcept { return text_; }

private:
    std::string text_;
};

}  // namespace TARN

#endif  // PLATFORM_URI_H
