#include "json_fields.h"

#include <algorithm>
#include <charconv>

#include <nlohmann/json.hpp>

namespace TARN::DevStandbyMgr {

void Refuse(const std::string& where, const std::string& what, const std::string& expected) {
    throw InputError((where.empty() ? "" : where + ": ") + what + "; expected " + expected);
}

std::string Quote(const JsonValue& value) {
    constexpr size_t kMost = 40;
    if (value.IsObject() || value.IsArray()) {
        return value.IsObject() ? "an object" : "an array";
    }
    std::string text = ToJson(value).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
    return text.size() <= kMost ? text : text.substr(0, kMost) + "...";
}

std::string Quote(std::string_view text) {
    return Quote(JsonValue(text));
}

void ExpectObject(const JsonValue& value, const std::string& where) {
    if (!value.IsObject()) {
        Refuse(where, Quote(value), "an object");
    }
}

void ExpectArray(const JsonValue& value, const std::string& where) {
    if (!value.IsArray()) {
        Refuse(where, Quote(value), "an array");
    }
}

JsonFields::JsonFields(const JsonValue& object, std::string where) : object_(object), where_(std::move(where)) {
    ExpectObject(object_, where_);
}

std::string JsonFields::Where(std::string_view key) const {
    return where_.empty() ? std::string(key) : where_ + "." + std::string(key);
}

const JsonValue* JsonFields::Find(std::string_view key) {
    names_.at(known_++) = key;
    for (const auto& [name, value] : object_.Members()) {
        if (name == key) {
            ++found_;
            return &value;
        }
    }
    return nullptr;
}

const JsonValue& JsonFields::Require(std::string_view key, const char* expected) {
    const JsonValue* value = Find(key);
    if (value == nullptr) {
        Refuse(where_, "no \"" + std::string(key) + "\"", expected);
    }
    return *value;
}

void JsonFields::Finish() const {
    if (found_ == object_.Members().size()) {
        return;
    }
    std::vector<std::string_view> known(names_.begin(), names_.begin() + static_cast<std::ptrdiff_t>(known_));
    std::sort(known.begin(), known.end());
    for (const auto& [name, value] : object_.Members()) {
        if (!std::binary_search(known.begin(), known.end(), name)) {
            std::string names;
            for (const std::string_view one : known) {
                names.append(names.empty() ? "" : ", ").append(one);
            }
            Refuse(where_, "unknown key " + Quote(name), "one of " + names);
        }
    }
}

bool ReadBool(const JsonValue& value, const std::string& where) {
    if (!value.IsBool()) {
        Refuse(where, Quote(value), "true or false");
    }
    return value.Bool();
}

int64_t ReadInteger(const JsonValue& value, const std::string& where, int64_t least, int64_t most) {
    if (!value.IsInteger() || value.Integer() < least || value.Integer() > most) {
        const bool isAny = least == std::numeric_limits<int64_t>::min() && most == std::numeric_limits<int64_t>::max();
        Refuse(where, Quote(value),
               isAny ? "a 64-bit integer" : "an integer from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return value.Integer();
}

int32_t ReadInt32(const JsonValue& value, const std::string& where) {
    return static_cast<int32_t>(
        ReadInteger(value, where, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

double ReadNumber(const JsonValue& value, const std::string& where) {
    if (!value.IsInteger() && !value.IsFloat()) {
        Refuse(where, Quote(value), "a number");
    }
    return value.IsFloat() ? value.Float() : static_cast<double>(value.Integer());
}

std::string ReadString(const JsonValue& value, const std::string& where) {
    if (!value.IsString()) {
        Refuse(where, Quote(value), "a string");
    }
    return std::string(value.String());
}

std::vector<std::string> ReadStrings(const JsonValue& value, const std::string& where) {
    ExpectArray(value, where);
    std::vector<std::string> strings;
    strings.reserve(value.Elements().size());
    for (const JsonValue& element : value.Elements()) {
        strings.push_back(ReadString(element, where + "[" + std::to_string(strings.size()) + "]"));
    }
    return strings;
}

int32_t ReadDecimalKey(std::string_view key, const std::string& where) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
    if (error != std::errc() || end != key.data() + key.size()) {
        Refuse(where, "key " + Quote(key), "a decimal 32-bit integer");
    }
    return number;
}

}  // namespace TARN::DevStandbyMgr
