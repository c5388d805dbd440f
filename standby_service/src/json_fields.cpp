#include "json_fields.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include <nlohmann/json.hpp>

namespace TARN::DevStandbyMgr {

void Refuse(std::string_view where, const std::string& what, std::string_view expected) {
    throw InputError(std::string(where) + (where.empty() ? "" : ": ") + what + "; expected " + std::string(expected));
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

void ExpectObject(const JsonValue& value, std::string_view where) {
    if (!value.IsObject()) {
        Refuse(where, Quote(value), "an object");
    }
}

void ExpectArray(const JsonValue& value, std::string_view where) {
    if (!value.IsArray()) {
        Refuse(where, Quote(value), "an array");
    }
}

JsonFields::JsonFields(const JsonValue& object, std::string where) : where_(std::move(where)) {
    ExpectObject(object, where_);
    members_ = object.Members();
}

std::string JsonFields::Where(std::string_view key) const {
    std::string name = where_;
    if (!name.empty()) {
        name += '.';
    }
    return name.append(key);
}

const JsonValue* JsonFields::FindAmongMembers(std::string_view key) {
    for (const auto& [name, value] : members_) {
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
    if (found_ == members_.size()) {
        return;
    }
    std::vector<std::string_view> known;
    std::transform(known_.begin(), known_.begin() + knownCount_, std::back_inserter(known),
                   [](const Key& key) { return std::string_view(key.text, key.size); });
    std::sort(known.begin(), known.end());
    for (const auto& [name, value] : members_) {
        if (!std::binary_search(known.begin(), known.end(), name)) {
            std::string names;
            for (const std::string_view one : known) {
                names.append(names.empty() ? "" : ", ").append(one);
            }
            Refuse(where_, "unknown key " + Quote(name), "one of " + names);
        }
    }
}

bool ReadBool(const JsonValue& value, std::string_view where) {
    if (!value.IsBool()) {
        Refuse(where, Quote(value), "true or false");
    }
    return value.Bool();
}

int64_t ReadInteger(const JsonValue& value, std::string_view where, int64_t least, int64_t most) {
    if (!value.IsInteger() || value.Integer() < least || value.Integer() > most) {
        const bool isAny = least == std::numeric_limits<int64_t>::min() && most == std::numeric_limits<int64_t>::max();
        Refuse(where, Quote(value),
               isAny ? "a 64-bit integer" : "an integer from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return value.Integer();
}

int32_t ReadInt32(const JsonValue& value, std::string_view where) {
    return static_cast<int32_t>(
        ReadInteger(value, where, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

double ReadNumber(const JsonValue& value, std::string_view where) {
    if (!value.IsInteger() && !value.IsFloat()) {
        Refuse(where, Quote(value), "a number");
    }
    return value.IsFloat() ? value.Float() : static_cast<double>(value.Integer());
}

std::string ReadString(const JsonValue& value, std::string_view where) {
    if (!value.IsString()) {
        Refuse(where, Quote(value), "a string");
    }
    return std::string(value.String());
}

std::vector<std::string> ReadStrings(const JsonValue& value, std::string_view where) {
    ExpectArray(value, where);
    std::vector<std::string> strings;
    strings.reserve(value.Elements().size());
    for (const JsonValue& element : value.Elements()) {
        strings.push_back(ReadString(element, std::string(where) + "[" + std::to_string(strings.size()) + "]"));
    }
    return strings;
}

int32_t ReadDecimalKey(std::string_view key, std::string_view where) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
    if (error != std::errc() || end != key.data() + key.size()) {
        Refuse(where, "key " + Quote(key), "a decimal 32-bit integer");
    }
    return number;
}

}  // namespace TARN::DevStandbyMgr
