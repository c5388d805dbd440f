#include "json_fields.h"

#include <charconv>

namespace TARN::DevStandbyMgr {

void Refuse(const std::string& where, const std::string& what, const std::string& expected) {
    throw InputError((where.empty() ? "" : where + ": ") + what + "; expected " + expected);
}

std::string Quote(const nlohmann::json& value) {
    constexpr size_t kMost = 40;
    if (value.is_structured()) {  // its text may be as deep as the input likes
        return value.is_object() ? "an object" : "an array";
    }
    std::string text = value.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
    return text.size() <= kMost ? text : text.substr(0, kMost) + "...";
}

void ExpectObject(const nlohmann::json& value, const std::string& where) {
    if (!value.is_object()) {
        Refuse(where, Quote(value), "an object");
    }
}

void ExpectArray(const nlohmann::json& value, const std::string& where) {
    if (!value.is_array()) {
        Refuse(where, Quote(value), "an array");
    }
}

JsonFields::JsonFields(const Json& object, std::string where) : object_(object), where_(std::move(where)) {
    ExpectObject(object_, where_);
}

std::string JsonFields::Where(const std::string& key) const {
    return where_.empty() ? key : where_ + "." + key;
}

const nlohmann::json* JsonFields::Find(const std::string& key) {
    known_.insert(key);
    const auto found = object_.find(key);
    return found == object_.end() ? nullptr : &*found;
}

const nlohmann::json& JsonFields::Require(const std::string& key, const std::string& expected) {
    const Json* value = Find(key);
    if (value == nullptr) {
        Refuse(where_, "no \"" + key + "\"", expected);
    }
    return *value;
}

void JsonFields::Finish() const {
    for (const auto& [key, value] : object_.items()) {
        if (known_.count(key) == 0) {
            std::string names;
            for (const std::string& name : known_) {
                names += names.empty() ? name : ", " + name;
            }
            Refuse(where_, "unknown key " + Quote(key), "one of " + names);
        }
    }
}

bool ReadBool(const nlohmann::json& value, const std::string& where) {
    if (!value.is_boolean()) {
        Refuse(where, Quote(value), "true or false");
    }
    return value.get<bool>();
}

int64_t ReadInteger(const nlohmann::json& value, const std::string& where, int64_t least, int64_t most) {
    const bool isTooBig = value.is_number_unsigned() &&
                          value.get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    if (!value.is_number_integer() || isTooBig || value.get<int64_t>() < least || value.get<int64_t>() > most) {
        const bool isAny = least == std::numeric_limits<int64_t>::min() && most == std::numeric_limits<int64_t>::max();
        Refuse(where, Quote(value),
               isAny ? "a 64-bit integer" : "an integer from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return value.get<int64_t>();
}

int32_t ReadInt32(const nlohmann::json& value, const std::string& where) {
    return static_cast<int32_t>(
        ReadInteger(value, where, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

double ReadNumber(const nlohmann::json& value, const std::string& where) {
    if (!value.is_number()) {
        Refuse(where, Quote(value), "a number");
    }
    return value.get<double>();
}

std::string ReadString(const nlohmann::json& value, const std::string& where) {
    if (!value.is_string()) {
        Refuse(where, Quote(value), "a string");
    }
    return value.get<std::string>();
}

std::vector<std::string> ReadStrings(const nlohmann::json& value, const std::string& where) {
    ExpectArray(value, where);
    std::vector<std::string> strings;
    strings.reserve(value.size());
    for (const nlohmann::json& element : value) {
        strings.push_back(ReadString(element, where + "[" + std::to_string(strings.size()) + "]"));
    }
    return strings;
}

int32_t ReadDecimalKey(const std::string& key, const std::string& where) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
    if (error != std::errc() || end != key.data() + key.size()) {
        Refuse(where, "key " + Quote(key), "a decimal 32-bit integer");
    }
    return number;
}

}  // namespace TARN::DevStandbyMgr
