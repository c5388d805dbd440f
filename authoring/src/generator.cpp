#include "generator.h"

#include <charconv>
#include <chrono>

#include "dice.h"
#include "generated_night.h"
#include "json_fields.h"

namespace TARN::Authoring {

namespace {

using DevStandbyMgr::Quote;
using DevStandbyMgr::Refuse;

constexpr uint64_t kMostDays = 2'500'000;

/// Days since the epoch.
int64_t ReadDate(const std::string& text) {
    constexpr size_t kLength = 10;
    ClockTime time;
    const auto number = [&text](size_t from, size_t count, int& target) {
        const char* const end = text.data() + from + count;
        return std::from_chars(text.data() + from, end, target).ptr == end;
    };
    const bool isDate = text.size() == kLength && text[4] == '-' && text[7] == '-' && number(0, 4, time.year) &&
                        number(5, 2, time.month) && number(8, 2, time.day) && time.year >= 1970;
    const auto t = isDate ? AsUtc(time) : std::nullopt;
    if (!t) {
        Refuse("--from", Quote(text), "a date such as 2026-01-05");
    }
    return *t / kDayMs;
}

std::string DateText(int64_t date) {
    const std::string written = Replay::TimeZone::Format(date * kDayMs + kDayMs / 2, "%a %d %b %Y");
    return written;
}

}  // namespace

Generator::Generator(Generation generation)
    : generation_(std::move(generation)), firstDay_(ReadDate(generation_.firstDate)) {
    (void)Zone(generation_.timezone);
}

Generator::~Generator() = default;

const Replay::TimeZone& Generator::Zone(const std::string& name) {
    return zones_.try_emplace(name, name).first->second;
}

void Generator::Write(uint64_t number, std::ostream& output) {
    const uint64_t person = (number - 1) % generation_.people;
    const uint64_t day = (number - 1) / generation_.people;
    const int64_t date = firstDay_ + static_cast<int64_t>(std::min(day, kMostDays));
    if (date > static_cast<int64_t>(kMostDays)) {
        Refuse("", "night " + std::to_string(number) + " lies too far ahead", "an earlier one, or more people");
    }
    const Person who = MakePerson(generation_.seed, person);
    const Whereabouts where = WhereIs(generation_.seed, person, who, day);
    LocalClock clock(Zone(where.zone.empty() ? generation_.timezone : std::string(where.zone)));
    const std::string title = "Night " + std::to_string(number) + " of seed " + std::to_string(generation_.seed) +
                              ", made up: " + DateText(date) + ", person " + std::to_string(person + 1) + ", who " +
                              std::string(kLifeNames.at(static_cast<size_t>(who.life))) +
                              (where.isUnderWay     ? ", under way"
                               : where.zone.empty() ? ", at home"
                                                    : ", on a trip");
    WriteGeneratedNight(Dice::Mix(Dice::Mix(generation_.seed, person), day), who, where, date, title, clock, output);
}

}  // namespace TARN::Authoring
