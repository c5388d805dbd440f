#include "arguments.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include "json_fields.h"

namespace TARN::Shell {

namespace {
constexpr std::string_view kBlanks = " \t\r";
}

std::string_view TakeWord(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text.remove_prefix(word.size());
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return word;
}

Arguments::Arguments(std::string_view text, std::string usage) : rest_(text), usage_(std::move(usage)) {}

std::optional<std::string> Arguments::MaybeWord() {
    const std::string_view word = TakeWord(rest_);
    return word.empty() ? std::nullopt : std::optional(std::string(word));
}

std::string Arguments::Word() {
    auto word = MaybeWord();
    if (!word) {
        Misused("something is missing");
    }
    return std::move(*word);
}

size_t Arguments::Choice(std::initializer_list<std::string_view> words) {
    const std::string word = Word();
    const auto found = std::find(words.begin(), words.end(), word);
    if (found == words.end()) {
        Misused(DevStandbyMgr::Quote(word));
    }
    return static_cast<size_t>(found - words.begin());
}

std::string Arguments::Number() {
    std::string word = Word();
    if (!nlohmann::json::parse(word, nullptr, /*allow_exceptions=*/false).is_number()) {
        Misused(DevStandbyMgr::Quote(word));
    }
    return word;
}

std::string Arguments::Integer() {
    std::string word = Word();
    if (!nlohmann::json::parse(word, nullptr, /*allow_exceptions=*/false).is_number_integer()) {
        Misused(DevStandbyMgr::Quote(word));
    }
    return word;
}

std::string Arguments::Rest() {
    const size_t length = rest_.find_last_not_of(kBlanks) + 1;
    return std::string(std::exchange(rest_, {}).substr(0, length));
}

std::string Arguments::Json(const std::string& absent) {
    std::string text = Rest();
    if (text.empty()) {
        return absent;
    }
    if (!nlohmann::json::accept(text)) {
        Misused("not JSON");
    }
    return text;
}

void Arguments::End() {
    if (!rest_.empty()) {
        Misused(DevStandbyMgr::Quote(Rest()) + " is too much");
    }
}

void Arguments::Misused(const std::string& what) const {
    DevStandbyMgr::Refuse("", what, usage_);
}

}  // namespace TARN::Shell
