#include "json_value.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <memory_resource>
#include <new>
#include <utility>

#include <simdjson.h>
#include <nlohmann/json.hpp>

#include "json_fields.h"

namespace TARN::DevStandbyMgr {

namespace {

using Json = nlohmann::json;
using Member = JsonValue::Member;

/// Deeper than anything means something; values are built and written level by level.
constexpr size_t kDeepest = 512;

/// Refuses an integer that does not fit 64 bits and that passed for a float, as parsers hand it on.
void CheckIntegers(std::string_view json) {
    constexpr std::string_view kNumber = "-+.eE0123456789";
    for (size_t at = 0; at < json.size(); ++at) {
        if (json[at] == '"') {
            for (++at; at < json.size() && json[at] != '"'; ++at) {
                at += json[at] == '\\' ? 1 : 0;
            }
            continue;
        }
        const size_t length = std::min(json.find_first_not_of(kNumber, at), json.size()) - at;
        if (length == 0) {
            continue;
        }
        const std::string_view number = json.substr(at, length);
        int64_t value = 0;
        if (number.find_first_of(".eE") == std::string_view::npos &&
            std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc::result_out_of_range) {
            constexpr size_t kMostShown = 40;
            Refuse("", std::string(number.substr(0, kMostShown)), "integers of 64 bits");
        }
        at += length - 1;
    }
}

[[noreturn]] void RefuseDepth() {
    Refuse("", "structures in structures, more than " + std::to_string(kDeepest), "some that mean something");
}

/// Makes values in memory that is given back as a whole.
class Builder {
public:
    explicit Builder(std::pmr::memory_resource& memory) : memory_(memory) {}

    /// False: nothing that the fast parser reads for certain, or wrong; the other one has the last word and the words.
    [[nodiscard]] bool Build(const simdjson::dom::element& element, JsonValue& value, size_t depth = 0) {
        using simdjson::dom::element_type;
        switch (element.type()) {
            case element_type::ARRAY:
                return depth < kDeepest && BuildArray(simdjson::dom::array(element), value, depth);
            case element_type::OBJECT:
                return depth < kDeepest && BuildObject(simdjson::dom::object(element), value, depth);
            case element_type::INT64:
                value = JsonValue(int64_t{element});
                return true;
            case element_type::DOUBLE:
                value = JsonValue(double{element});
                return true;
            case element_type::STRING:
                value = JsonValue(std::string_view(element));
                return true;
            case element_type::BOOL:
                value = JsonValue(bool{element});
                return true;
            case element_type::NULL_VALUE:
                value = JsonValue();
                return true;
            case element_type::UINT64:  // more than the signed type holds
                return false;
        }
        return false;
    }

    JsonValue Build(const Json& json, size_t depth = 0) {
        if (json.is_structured() && depth >= kDeepest) {
            RefuseDepth();
        }
        switch (json.type()) {
            case Json::value_t::object: {
                const auto members = Allocate<Member>(json.size());
                size_t count = 0;
                for (const auto& [name, value] : json.items()) {
                    members[count++] = {name, Build(value, depth + 1)};
                }
                return JsonValue(std::span<const Member>(members));
            }
            case Json::value_t::array: {
                const auto elements = Allocate<JsonValue>(json.size());
                std::transform(json.begin(), json.end(), elements.begin(),
                               [&](const Json& element) { return Build(element, depth + 1); });
                return JsonValue(std::span<const JsonValue>(elements));
            }
            case Json::value_t::string:
                return JsonValue(std::string_view(json.get_ref<const std::string&>()));
            case Json::value_t::boolean:
                return JsonValue(json.get<bool>());
            case Json::value_t::number_unsigned:
                if (json.get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
                    return JsonValue(json.get<double>());
                }
                return JsonValue(json.get<int64_t>());
            case Json::value_t::number_integer:
                return JsonValue(json.get<int64_t>());
            case Json::value_t::number_float:
                return JsonValue(json.get<double>());
            case Json::value_t::null:
            case Json::value_t::binary:
            case Json::value_t::discarded:
                break;
        }
        return {};
    }

private:
    template <class T>
    std::span<T> Allocate(size_t count) {
        T* first = static_cast<T*>(memory_.allocate(std::max<size_t>(count, 1) * sizeof(T), alignof(T)));
        std::uninitialized_value_construct_n(first, count);
        return {first, count};
    }

    bool BuildArray(const simdjson::dom::array& array, JsonValue& value, size_t depth) {
        const auto elements = Allocate<JsonValue>(static_cast<size_t>(std::distance(array.begin(), array.end())));
        auto next = elements.begin();
        for (const simdjson::dom::element element : array) {
            if (!Build(element, *next++, depth + 1)) {
                return false;
            }
        }
        value = JsonValue(std::span<const JsonValue>(elements));
        return true;
    }

    bool BuildObject(const simdjson::dom::object& object, JsonValue& value, size_t depth) {
        const auto members = Allocate<Member>(static_cast<size_t>(std::distance(object.begin(), object.end())));
        auto next = members.begin();
        for (const auto& [name, element] : object) {
            next->name = name;
            if (!Build(element, (next++)->value, depth + 1)) {
                return false;
            }
        }
        value = JsonValue(std::span<const Member>(members));
        if (members.size() < 2) {
            return true;
        }
        const auto isBefore = [](const Member& one, const Member& other) { return one.name < other.name; };
        std::sort(members.begin(), members.end(), isBefore);
        return std::adjacent_find(members.begin(), members.end(), [](const Member& one, const Member& other) {
                   return one.name == other.name;
               }) == members.end();
    }

    std::pmr::memory_resource& memory_;
};

}  // namespace

struct JsonDocument::Parts {
    std::array<std::byte, 4096> first;
    std::pmr::monotonic_buffer_resource memory{first.data(), first.size()};
    simdjson::dom::parser parser;
    Json slow;
    JsonValue root;
};

JsonDocument::JsonDocument() : parts_(std::make_unique<Parts>()) {}
JsonDocument::~JsonDocument() = default;
JsonDocument::JsonDocument(JsonDocument&&) noexcept = default;
JsonDocument& JsonDocument::operator=(JsonDocument&&) noexcept = default;

const JsonValue& JsonDocument::Root() const noexcept {
    return parts_->root;
}

const JsonValue& JsonDocument::Read(const std::string& text, const char* expected, JsonComments comments) {
    Parts& parts = *parts_;
    parts.memory.release();
    Builder builder(parts.memory);
    if (comments == JsonComments::REFUSED) {
        simdjson::dom::element element;
        if (parts.parser.parse(text).get(element) == simdjson::SUCCESS && builder.Build(element, parts.root)) {
            return parts.root;
        }
    }
    parts.slow = ParseJson(text, expected, comments);
    if (comments == JsonComments::REFUSED) {
        CheckIntegers(text);
    }
    parts.root = builder.Build(parts.slow);
    return parts.root;
}

Json ToJson(const JsonValue& value) {
    if (value.IsObject()) {
        Json object = Json::object();
        for (const Member& member : value.Members()) {
            object[std::string(member.name)] = ToJson(member.value);
        }
        return object;
    }
    if (value.IsArray()) {
        Json array = Json::array();
        for (const JsonValue& element : value.Elements()) {
            array.push_back(ToJson(element));
        }
        return array;
    }
    return value.IsString()    ? Json(value.String())
           : value.IsBool()    ? Json(value.Bool())
           : value.IsInteger() ? Json(value.Integer())
           : value.IsFloat()   ? Json(value.Float())
                               : Json();
}

}  // namespace TARN::DevStandbyMgr
