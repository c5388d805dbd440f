#include "record_reader.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include <nlohmann/json.hpp>

#include "json_fields.h"
#include "plain_text.h"

namespace TARN::Replay {

namespace {

using DevStandbyMgr::Refuse;
using Json = nlohmann::json;

/// No run nests deeper; what writes a value out again goes down as many calls.
constexpr size_t kDeepest = 64;
constexpr std::string_view kSummary = "summary";
constexpr std::string_view kReason = "reason";
constexpr std::array<std::string_view, 6> kKinds = {"log", "call", "deliver", "dump", kReason, kSummary};
constexpr char kWholeRecord[] = "a whole record, as standby replay --format jsonl writes it";

/// Finds the time and the kind of a line while it is checked; builds nothing.
class LineScanner : public nlohmann::json_sax<Json> {
public:
    std::optional<int64_t> t;
    std::string kind;

    [[nodiscard]] bool IsLine() const { return t && !kind.empty(); }

    bool null() override { return Value(); }
    bool boolean(bool /*value*/) override { return Value(); }
    bool number_integer(int64_t value) override { return Number(value); }
    bool number_unsigned(uint64_t value) override {
        return value <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max()) ? Number(static_cast<int64_t>(value))
                                                                                   : Value();
    }
    bool number_float(double /*value*/, const std::string& /*text*/) override { return Value(); }
    bool string(std::string& /*value*/) override { return Value(); }
    bool binary(Json::binary_t& /*value*/) override { return Value(); }
    bool key(std::string& key) override {
        if (depth_ == 1) {
            isTime_ = key == "t";
            if (!isTime_ && kind.empty()) {
                kind = key;
            }
        }
        return true;
    }
    bool start_object(size_t /*size*/) override { return Open(); }
    bool end_object() override { return Close(); }
    bool start_array(size_t /*size*/) override { return depth_ > 0 && Open(); }
    bool end_array() override { return Close(); }
    bool parse_error(size_t /*place*/, const std::string& /*last*/, const Json::exception& /*error*/) override {
        return false;
    }

private:
    bool Value() {
        isTime_ = false;
        return depth_ > 0;
    }
    bool Number(int64_t value) {
        if (isTime_) {
            t = value;
        }
        return Value();
    }
    bool Open() {
        isTime_ = false;
        return ++depth_ <= kDeepest;
    }
    bool Close() {
        --depth_;
        return true;
    }

    size_t depth_ = 0;
    bool isTime_ = false;
};

std::optional<RecordLine> Scan(std::string_view text) {
    LineScanner scanner;
    if (!Json::sax_parse(text, &scanner) || !scanner.IsLine()) {
        return std::nullopt;
    }
    return RecordLine{*scanner.t, std::move(scanner.kind), {}};
}

}  // namespace

bool IsRecordLine(std::string_view text) {
    const auto line = Scan(text);
    return line && std::find(kKinds.begin(), kKinds.end(), line->kind) != kKinds.end();
}

RecordReader::RecordReader(std::istream& input, std::string name, bool hasReasons)
    : input_(input), name_(std::move(name)), hasReasons_(hasReasons) {}

void RecordReader::Fail(const std::string& what, const std::string& expected) const {
    Refuse(name_ + ":" + std::to_string(number_), what, expected);
}

bool RecordReader::ReadText(std::string& text) {
    ++number_;
    try {
        if (!DevStandbyMgr::ReadLine(input_, text, kWholeRecord)) {
            return false;
        }
    } catch (const DevStandbyMgr::InputError& error) {
        throw DevStandbyMgr::InputError(name_ + ":" + std::to_string(number_) + ": " + error.what());
    }
    if (input_.eof()) {
        Fail("the record ends in the middle of a line", kWholeRecord);
    }
    return true;
}

std::optional<RecordLine> RecordReader::Next() {
    std::optional<RecordLine> line = Read();
    while (line && !hasReasons_ && line->kind == kReason) {
        line = Read();
    }
    return line;
}

std::optional<RecordLine> RecordReader::Read() {
    std::string text;
    if (!ReadText(text)) {
        --number_;
        if (last_) {
            Fail("the record ends before the summary of its run", kWholeRecord);
        }
        return std::nullopt;
    }
    auto line = Scan(text);
    if (!line) {
        Fail("not a line of a record", R"(an object such as {"t":0,"call":{}})");
    }
    if (last_ && line->t < *last_) {
        Fail("t: " + std::to_string(line->t) + " goes back", "a time from " + std::to_string(*last_));
    }
    line->text = std::move(text);
    last_ = line->kind == kSummary ? std::nullopt : std::optional(line->t);
    return line;
}

}  // namespace TARN::Replay
