#ifndef STANDBY_SERVICE_JSON_VALUE_H
#define STANDBY_SERVICE_JSON_VALUE_H

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "json_text.h"

namespace TARN::DevStandbyMgr {

/// A value of a JsonDocument, which keeps what it points to. Each getter is for its own type only.
class JsonValue {
public:
    struct Member;

    JsonValue() noexcept : type_(Type::NONE), integer_(0) {}
    explicit JsonValue(bool value) noexcept : type_(Type::BOOL), integer_(value ? 1 : 0) {}
    explicit JsonValue(int64_t value) noexcept : type_(Type::INTEGER), integer_(value) {}
    explicit JsonValue(double value) noexcept : type_(Type::FLOAT), float_(value) {}
    explicit JsonValue(std::string_view value) noexcept
        : type_(Type::STRING), size_(value.size()), text_(value.data()) {}
    explicit JsonValue(std::span<const JsonValue> elements) noexcept
        : type_(Type::ARRAY), size_(elements.size()), elements_(elements.data()) {}
    explicit JsonValue(std::span<const Member> members) noexcept;

    [[nodiscard]] bool IsNull() const noexcept { return type_ == Type::NONE; }
    [[nodiscard]] bool IsBool() const noexcept { return type_ == Type::BOOL; }
    [[nodiscard]] bool IsInteger() const noexcept { return type_ == Type::INTEGER; }
    [[nodiscard]] bool IsFloat() const noexcept { return type_ == Type::FLOAT; }
    [[nodiscard]] bool IsString() const noexcept { return type_ == Type::STRING; }
    [[nodiscard]] bool IsArray() const noexcept { return type_ == Type::ARRAY; }
    [[nodiscard]] bool IsObject() const noexcept { return type_ == Type::OBJECT; }

    [[nodiscard]] bool Bool() const noexcept { return integer_ != 0; }
    [[nodiscard]] int64_t Integer() const noexcept { return integer_; }
    [[nodiscard]] double Float() const noexcept { return float_; }
    [[nodiscard]] std::string_view String() const noexcept { return {text_, size_}; }
    [[nodiscard]] std::span<const JsonValue> Elements() const noexcept { return {elements_, size_}; }
    /// By name, each name once.
    [[nodiscard]] std::span<const Member> Members() const noexcept;

private:
    enum class Type : uint8_t { NONE, BOOL, INTEGER, FLOAT, STRING, ARRAY, OBJECT };

    Type type_;
    size_t size_ = 0;
    union {
        int64_t integer_;
        double float_;
        const char* text_;
        const JsonValue* elements_;
        const Member* members_;
    };
};

struct JsonValue::Member {
    std::string_view name;
    JsonValue value;
};

inline JsonValue::JsonValue(std::span<const Member> members) noexcept
    : type_(Type::OBJECT), size_(members.size()), members_(members.data()) {}

inline std::span<const JsonValue::Member> JsonValue::Members() const noexcept {
    return {members_, size_};
}

/// Reads JSON that people and programs write, one text after the other in the same memory.
class JsonDocument {
public:
    JsonDocument();
    ~JsonDocument();
    JsonDocument(JsonDocument&&) noexcept;
    JsonDocument& operator=(JsonDocument&&) noexcept;

    /// The text's value; what was read before is gone. Throws InputError as ParseJson does, for a structure that is
    /// too deep to mean anything, and for an integer of more than 64 bits where comments are refused.
    const JsonValue& Read(const std::string& text, const char* expected, JsonComments comments = JsonComments::REFUSED);

    /// What was read last.
    [[nodiscard]] const JsonValue& Root() const noexcept;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

/// The value by itself, to be written out or changed.
[[nodiscard]] nlohmann::json ToJson(const JsonValue& value);

}  // namespace TARN::DevStandbyMgr

#endif  // STANDBY_SERVICE_JSON_VALUE_H
