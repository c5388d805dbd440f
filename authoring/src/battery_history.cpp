#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "import.h"
#include "json_fields.h"
#include "log_time.h"
#include "plain_text.h"
#include "translation.h"

namespace TARN::Authoring {

namespace {

using DevStandbyMgr::InputError;
using DevStandbyMgr::Quote;
using DevStandbyMgr::Refuse;

constexpr size_t kMostBytes = size_t{1024} * 1024;
constexpr std::string_view kBlanks = " \t\r";

std::string_view Trimmed(std::string_view text) {
    const size_t from = text.find_first_not_of(kBlanks);
    return from == std::string_view::npos ? std::string_view()
                                          : text.substr(from, text.find_last_not_of(kBlanks) - from + 1);
}

/// Takes the first word off; quotes hold blanks together.
std::string_view TakeWord(std::string_view& text) {
    text = Trimmed(text);
    bool isQuoted = false;
    size_t end = 0;
    for (; end < text.size() && (isQuoted || kBlanks.find(text[end]) == std::string_view::npos); ++end) {
        isQuoted = text[end] == '"' ? !isQuoted : isQuoted;
    }
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

/// "+1d02h03m04s005ms" after the beginning, or "0"; nothing for any other text.
std::optional<int64_t> ReadSince(std::string_view word) {
    struct Unit {
        std::string_view name;
        int64_t ms;
    };
    constexpr std::array kUnits = {Unit{"d", kDayMs}, Unit{"h", kHourMs}, Unit{"m", kMinuteMs}, Unit{"s", kSecondMs},
                                   Unit{"ms", 1}};
    if (word == "0") {
        return 0;
    }
    if (word.size() < 2 || word.front() != '+') {
        return std::nullopt;
    }
    word.remove_prefix(1);
    int64_t since = 0;
    for (auto unit = kUnits.begin(); !word.empty();) {
        int32_t number = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        word.remove_prefix(static_cast<size_t>(end - word.data()));
        const std::string_view name = word.substr(0, std::min(word.find_first_of("0123456789"), word.size()));
        unit = std::find_if(unit, kUnits.end(), [name](const Unit& one) { return one.name == name; });
        if (error != std::errc() || number < 0 || unit == kUnits.end()) {
            return std::nullopt;
        }
        since += number * unit->ms;
        word.remove_prefix(name.size());
        ++unit;
    }
    return since;
}

bool IsAllOf(std::string_view word, std::string_view chars) {
    return !word.empty() && word.find_first_not_of(chars) == std::string_view::npos;
}

/// "2026-03-01-22-30-00", with or without "-250" behind it, as ISO writes it.
std::string IsoOf(std::string_view text) {
    std::string iso(text);
    constexpr std::array<std::pair<size_t, char>, 4> kMarks = {{{10, 'T'}, {13, ':'}, {16, ':'}, {19, '.'}}};
    for (const auto& [at, mark] : kMarks) {
        if (iso.size() > at && iso[at] == '-') {
            iso[at] = mark;
        }
    }
    return iso;
}

/// A flag of the history and what it says when it rises and when it falls.
struct Flag {
    std::string_view name;
    std::string_view rises;
    std::string_view falls;
};
constexpr std::array kFlags = {Flag{"screen", "screen on", "screen off"},
                               Flag{"plugged", "charger on", "charger off"},
                               Flag{"wifi", "wifi on", "wifi off"},
                               Flag{"bluetooth", "bluetooth on", "bluetooth off"},
                               Flag{"phone_in_call", "call start", "call end"},
                               Flag{"audio", "audio start", "audio end"},
                               Flag{"gps", "location start", "location end"},
                               Flag{"power_save", "saving on", "saving off"},
                               Flag{"low_power", "saving on", "saving off"}};

class BatteryHistory {
public:
    BatteryHistory(const Source& source, const std::optional<std::string>& start, std::ostream& output)
        : source_(source), translation_(source, output, [](const std::string& /*text*/) { return std::nullopt; }) {
        if (start) {
            base_ = LogTime("iso", "").Read(*start, translation_.Clock(), std::numeric_limits<int64_t>::min());
            if (!base_) {
                Refuse("--start", Quote(*start), "a time such as 2026-03-01T22:30:00");
            }
        }
    }

    Imported Run() {
        while (!isOver_ && ReadLine()) {
            Tell(Trimmed(line_));
        }
        if (imported_.read == 0) {
            Refuse(source_.name, "no line of a history", "lines such as \"+1m02s345ms (2) 072 -screen\"");
        }
        translation_.End(last_, imported_);
        return std::move(imported_);
    }

private:
    [[nodiscard]] std::string Where() const { return source_.name + ":" + std::to_string(number_); }

    bool ReadLine() {
        ++number_;
        try {
            return DevStandbyMgr::ReadLine(source_.input, line_, "a history of Android's battery statistics",
                                           kMostBytes);
        } catch (const InputError& error) {
            throw InputError(Where() + ": " + error.what());
        }
    }

    /// Before the history and after it there may be anything.
    void Tell(std::string_view line) {
        const bool looksSo = line.starts_with('+') || line.starts_with("0 (");
        if (!looksSo) {
            const bool isWithin = imported_.read > 0 && !line.empty();
            const bool isIndented = kBlanks.find(line_.front()) != std::string_view::npos;
            isOver_ = imported_.read > 0 && (line.empty() || !isIndented);
            if (isWithin && isIndented) {
                imported_.losses.Add("lines of details");
            }
            return;
        }
        const std::string_view since = TakeWord(line);
        const std::string_view size = TakeWord(line);
        const auto sinceMs = ReadSince(since);
        const bool isSize = size.size() > 2 && size.front() == '(' && size.back() == ')' &&
                            IsAllOf(size.substr(1, size.size() - 2), "0123456789");
        if (!sinceMs || !isSize) {
            Refuse(Where(), Quote(std::string(Trimmed(line_))), "a line such as \"+1m02s345ms (2) 072 -screen\"");
        }
        if (*sinceMs < since_) {
            Refuse(Where(), Quote(std::string(since)) + " goes back", "lines in the order of time");
        }
        since_ = *sinceMs;
        ++imported_.read;
        TellWords(Trimmed(line));
    }

    void TellWords(std::string_view words) {
        for (const std::string_view mark : {"RESET:TIME: ", "TIME: "}) {
            if (words.starts_with(mark)) {
                SetClock(std::string(Trimmed(words.substr(mark.size()))));
                isFull_ = isFull_ || mark.front() == 'R';
                return;
            }
        }
        if (words == "START" || words == "SHUTDOWN") {
            Restart(words == "START");
            return;
        }
        if (words.starts_with("*")) {
            imported_.losses.Add(std::string(words));
            return;
        }
        const std::string_view level = TakeWord(words);
        if (level.size() != 3 || !IsAllOf(level, "0123456789")) {
            Refuse(Where(), Quote(std::string(level)), "the battery's level, three digits, TIME or START");
        }
        Now();
        seen_.clear();
        for (std::string_view word = TakeWord(words); !word.empty(); word = TakeWord(words)) {
            TellWord(word);
        }
        if (std::exchange(isFull_, false)) {
            // The first line names every flag that is up.
            for (const std::string_view name : {"screen", "wifi"}) {
                if (!seen_.contains(name)) {
                    TellFlag(name, false);
                }
            }
        }
    }

    void TellWord(std::string_view word) {
        const std::string_view name = word.substr(0, word.find('='));
        if (word.starts_with("plug=")) {
            TellFlag("plugged", word != "plug=none");
        } else if ((word.front() == '+' || word.front() == '-') && name.size() == word.size() &&
                   TellFlag(word.substr(1), word.front() == '+')) {
            seen_.insert(word.substr(1));
        } else if (name.size() < word.size()) {
            imported_.losses.Add(std::string(name) + (word.front() == '+' || word.front() == '-' ? "" : "=..."));
        } else if (!(word.size() == 8 && IsAllOf(word, "0123456789abcdef"))) {  // the states once more, as bits
            imported_.losses.Add(std::string(word));
        }
    }

    bool TellFlag(std::string_view name, bool rises) {
        const auto flag =
            std::find_if(kFlags.begin(), kFlags.end(), [name](const Flag& one) { return one.name == name; });
        return flag != kFlags.end() && translation_.Say(Now(), {rises ? flag->rises : flag->falls, {}});
    }

    void SetClock(const std::string& text) {
        const auto t = LogTime("iso", "").Read(IsoOf(text), translation_.Clock(), last_);
        if (!t) {
            Refuse(Where(), Quote(text), "a time such as 2026-03-01-22-30-00");
        }
        if (!base_) {
            base_ = *t - since_;
        } else if (constexpr int64_t kSame = kMinuteMs; std::abs(*base_ + since_ - *t) > kSame) {
            imported_.losses.Add("clocks set");
        }
    }

    /// The phone starts again: the service too, and all flags are named anew.
    void Restart(bool isStart) {
        if (isStart && hasBegun_) {
            (void)translation_.Say(Now(), {"restart", {}});
        }
        isFull_ = isFull_ || isStart;
    }

    int64_t Now() {
        if (!base_) {
            Refuse(Where(), "no TIME line before it", "one, or --start with the wall clock at the beginning");
        }
        hasBegun_ = true;
        last_ = *base_ + since_;
        if (last_ < -kLatestMs || last_ > kLatestMs) {
            Refuse(Where(), "a time behind the year 9999", "an earlier one");
        }
        translation_.Begin(last_);
        return last_;
    }

    const Source& source_;
    Translation translation_;
    Imported imported_;
    std::string line_;
    size_t number_ = 0;
    std::optional<int64_t> base_;  ///< the wall clock at the beginning
    int64_t since_ = 0;            ///< the beginning, of the line read last
    int64_t last_ = std::numeric_limits<int64_t>::min();
    bool hasBegun_ = false;
    bool isFull_ = true;  ///< the next line names every flag that is up
    bool isOver_ = false;
    std::set<std::string_view> seen_;  ///< flags of this line
};

}  // namespace

Imported ImportBatteryHistory(const Source& source, const std::optional<std::string>& start, std::ostream& output) {
    return BatteryHistory(source, start, output).Run();
}

}  // namespace TARN::Authoring
