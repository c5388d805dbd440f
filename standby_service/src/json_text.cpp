#include "json_text.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "json_fields.h"

namespace TARN::DevStandbyMgr {

namespace {

using Json = nlohmann::json;

/// How many members the text of an object seems to have: its colons outside of strings.
size_t ColonsIn(std::string_view json) {
    size_t colons = 0;
    for (size_t at = 0; at < json.size(); ++at) {
        if (json[at] == '"') {
            for (++at; at < json.size() && json[at] != '"'; ++at) {
                at += json[at] == '\\' ? 1 : 0;
            }
        } else if (json[at] == ':') {
            ++colons;
        }
    }
    return colons;
}

/// How many members all objects within have. Not recursive, since the input says how deep it is.
size_t MembersIn(const Json& value) {
    size_t members = 0;
    std::vector<const Json*> waiting = {&value};
    while (!waiting.empty()) {
        const Json& one = *waiting.back();
        waiting.pop_back();
        members += one.is_object() ? one.size() : 0;
        if (one.is_structured()) {
            for (const Json& inner : one) {
                if (inner.is_structured()) {
                    waiting.push_back(&inner);
                }
            }
        }
    }
    return members;
}

/// Looks for the first fault: a key that an object has twice, or the place where the text is no JSON any more.
class FaultFinder : public nlohmann::json_sax<Json> {
public:
    [[nodiscard]] const std::optional<std::string>& TwiceKey() const noexcept { return twiceKey_; }

    /// How many bytes are right, and the parser's words about what follows.
    [[nodiscard]] size_t Place() const noexcept { return place_; }
    [[nodiscard]] const std::string& Reason() const noexcept { return reason_; }

    bool start_object(size_t /*elements*/) override {
        keys_.emplace_back();
        return true;
    }
    bool end_object() override {
        keys_.pop_back();
        return true;
    }
    bool key(string_t& key) override {
        if (keys_.back().insert(key).second) {
            return true;
        }
        twiceKey_ = key;
        return false;
    }
    bool null() override { return true; }
    bool boolean(bool /*value*/) override { return true; }
    bool number_integer(number_integer_t /*value*/) override { return true; }
    bool number_unsigned(number_unsigned_t /*value*/) override { return true; }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return true; }
    bool string(string_t& /*value*/) override { return true; }
    bool binary(binary_t& /*value*/) override { return true; }
    bool start_array(size_t /*elements*/) override { return true; }
    bool end_array() override { return true; }
    bool parse_error(size_t position, const std::string& /*token*/, const Json::exception& error) override {
        place_ = position == 0 ? 0 : position - 1;
        reason_ = error.what();
        return false;
    }

private:
    std::vector<std::set<std::string>> keys_;
    std::optional<std::string> twiceKey_;
    size_t place_ = 0;
    std::string reason_;
};

/// Where and why the parser gave up, in its words but without the text it read last, which may be anything.
[[noreturn]] void RefuseText(const std::string& text, const std::string& expected, const FaultFinder& finder) {
    constexpr std::string_view kDetail = " - ";
    constexpr std::string_view kExpected = "; expected ";
    std::string reason = finder.Reason();
    if (const size_t detail = reason.find(kDetail); detail != std::string::npos) {
        reason.erase(0, detail + kDetail.size());
    }
    std::string wanted = expected;
    if (const size_t told = reason.rfind(kExpected); told != std::string::npos) {
        wanted = reason.substr(told + kExpected.size());
        reason.erase(told);
    }
    reason.erase(std::min(reason.find("; last read:"), reason.size()));
    const std::string_view before = std::string_view(text).substr(0, finder.Place());
    const size_t lineBegin = before.find_last_of('\n') + 1;  // 0 where there is none
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const bool isOneLine = text.find('\n') == std::string::npos;
    Refuse("",
           "not JSON, " + (isOneLine ? "" : "line " + std::to_string(line) + ", ") + "column " +
               std::to_string(before.size() - lineBegin + 1) + ": " + reason,
           wanted);
}

}  // namespace

Json ParseJson(const std::string& text, const std::string& expected, JsonComments comments) {
    const bool hasComments = comments == JsonComments::SKIPPED;
    Json value = Json::parse(text, nullptr, /*allow_exceptions=*/false, hasComments);
    if (!value.is_discarded() && !hasComments && ColonsIn(text) == MembersIn(value)) {
        return value;
    }
    FaultFinder finder;
    static_cast<void>(Json::sax_parse(text, &finder, Json::input_format_t::json, /*strict=*/true, hasComments));
    if (finder.TwiceKey()) {
        Refuse("", "the key " + Quote(*finder.TwiceKey()) + " stands twice in one object", "each key once");
    }
    if (value.is_discarded()) {
        RefuseText(text, expected, finder);
    }
    return value;
}

bool IsCutOffJson(const std::string& text) {
    FaultFinder finder;
    return !Json::sax_parse(text, &finder) && !finder.TwiceKey() && finder.Place() >= text.size();
}

}  // namespace TARN::DevStandbyMgr
