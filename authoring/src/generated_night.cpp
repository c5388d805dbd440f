#include "generated_night.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>

#include "dice.h"

namespace TARN::Authoring {

namespace {

// What chance is asked for, so that one thing's luck is not another's.
constexpr uint64_t kTrips = 2;
constexpr uint64_t kNights = 3;

constexpr int64_t kDayMinutes = 24 * 60;
constexpr int64_t kScreenLux = 4;  ///< the phone's own light in the dark

struct Destination {
    std::string_view zone;
    int64_t hoursAhead;
    int weight;
};
constexpr std::array kDestinations = {Destination{"Europe/London", -1, 30}, Destination{"Europe/Athens", 1, 25},
                                      Destination{"Europe/Lisbon", -1, 15}, Destination{"America/New_York", -6, 12},
                                      Destination{"Asia/Dubai", 3, 10},     Destination{"Asia/Tokyo", 8, 8}};

/// Sunrise and sunset of each month in the middle of Europe, minutes since midnight by the local clock.
constexpr std::array<int64_t, 12> kSunrise = {490, 450, 390, 385, 325, 300, 315, 360, 405, 455, 445, 485};
constexpr std::array<int64_t, 12> kSunset = {1000, 1055, 1105, 1215, 1265, 1300, 1290, 1240, 1170, 1105, 985, 965};

constexpr unsigned kFriday = 5;
constexpr unsigned kSaturday = 6;
constexpr unsigned kSunday = 0;

unsigned WeekdayOf(int64_t date) {
    return std::chrono::weekday(std::chrono::sys_days(std::chrono::days(date))).c_encoding();
}

bool IsWorkday(const Person& person, int64_t date) {
    const unsigned weekday = WeekdayOf(date);
    return person.life != Life::RETIRED && weekday != kSaturday && weekday != kSunday;
}

/// Puts a night together. No call asks chance for two of its arguments: their order is the compiler's.
class Maker {
public:
    Maker(uint64_t seed, const Person& person, const Whereabouts& where, int64_t date, LocalClock& clock)
        : person_(person),
          where_(where),
          date_(date),
          clock_(clock),
          dice_(seed),
          month_(static_cast<unsigned>(
                     std::chrono::year_month_day(std::chrono::sys_days(std::chrono::days(date))).month()) -
                 1) {
        const bool isFree = !IsWorkday(person, date + 1);
        const int64_t lag = JetLag();
        const int64_t habit = isFree ? person.freeWake : person.workdayWake;
        const int64_t own = std::clamp<int64_t>(dice_.About(habit, isFree ? 35 : 10) + lag, 240, 720);
        const bool isLateNight = WeekdayOf(date) == kFriday || WeekdayOf(date) == kSaturday;
        const int64_t late = isLateNight ? dice_.Between(0, 60) : 0;
        const int64_t bed = habit + lag - dice_.About(person.sleepMinutes, 25) + late;
        bed_ = At(date + 1, std::clamp<int64_t>(bed, -180, 180));
        rings_ = AlarmOn(date + 1);
        wake_ = rings_ ? *rings_ : At(date + 1, own);
        bed_ = std::min(bed_, wake_ - 3 * kHourMs);
        start_ = At(date, 20 * 60);
        up_ = wake_;
        if (rings_ && person.snoozes) {
            snoozes_ = static_cast<int>(dice_.Between(0, 3));
            up_ = wake_ + snoozes_ * kSnoozeMs;
        }
        end_ = up_ + kHourMs;
    }

    void Make(const std::string& title, const Json& host, TraceWriter& writer) {
        plan_.emplace(start_, end_);
        plan_->Remark(start_, title);
        Evening();
        if (where_.isUnderWay) {
            UnderWay();
        } else {
            GoToBed();
            Sleep();
            Dawn();
        }
        Charge();
        Radios();
        Wake();
        plan_->Write(writer, host, person_.device);
    }

private:
    static constexpr int64_t kSnoozeMs = 9 * kMinuteMs;

    /// So many minutes after a date's midnight by the local clock; before it where negative.
    int64_t At(int64_t date, int64_t minutes) {
        date += (minutes < 0 ? -1 : 0) + (minutes >= kDayMinutes ? 1 : 0);
        minutes = (minutes + kDayMinutes) % kDayMinutes;
        const std::chrono::year_month_day day{std::chrono::sys_days(std::chrono::days(date))};
        ClockTime time;
        time.year = static_cast<int>(day.year());
        time.month = static_cast<int>(static_cast<unsigned>(day.month()));
        time.day = static_cast<int>(static_cast<unsigned>(day.day()));
        time.hour = static_cast<int>(minutes / 60);
        time.minute = static_cast<int>(minutes % 60);
        if (const auto t = clock_.Read(time)) {
            return *t;
        }
        ++time.hour;  // the hour that the clock leaves out
        return clock_.Read(time).value_or(date * kDayMs + minutes * kMinuteMs);
    }

    std::optional<int64_t> AlarmOn(int64_t date) {
        const bool isWorkday = IsWorkday(person_, date);
        const bool isSet = isWorkday || person_.life == Life::RETIRED ? person_.hasWorkdayAlarm : person_.hasFreeAlarm;
        return isSet ? std::optional(At(date, isWorkday ? person_.workdayWake : person_.freeWake)) : std::nullopt;
    }

    /// The next one after a day, within a week.
    std::optional<int64_t> NextAlarm(int64_t date) {
        for (int64_t day = date; day < date + 7; ++day) {
            if (const auto alarm = AlarmOn(day)) {
                return alarm;
            }
        }
        return std::nullopt;
    }

    /// By how much later the body wants to sleep and wake than the clock here says: half of it is there on the first
    /// night, a quarter on the second.
    int64_t JetLag() const {
        const int64_t lag = where_.nightsThere > 1 ? 0 : where_.hoursAhead * 60 / (where_.nightsThere == 0 ? 2 : 4);
        return std::clamp<int64_t>(lag, -180, 180);
    }

    void Seconds(int64_t& t, int64_t least, int64_t most) { t += dice_.Between(least * kSecondMs, most * kSecondMs); }
    int64_t Minutes(int64_t least, int64_t most) { return dice_.Between(least * kMinuteMs, most * kMinuteMs); }

    /// Somebody takes the phone, looks, and lays it down again.
    void Look(int64_t from, int64_t to, int unlockPercent) {
        plan_->During(While::SCREEN, from, to);
        const int64_t taken = from + dice_.Between(200, 1500);
        const int64_t laidDown = to + dice_.Between(2 * kSecondMs, 40 * kSecondMs);
        plan_->During(While::MOVING, taken, laidDown);
        if (const int64_t unlock = from + dice_.Between(1500, 5000); unlock < to && dice_.Chance(unlockPercent)) {
            plan_->Unlock(unlock);
        }
    }

    /// A message lights the screen for some seconds.
    void Message(int64_t t) { plan_->During(While::SCREEN, t, t + dice_.Between(5 * kSecondMs, 10 * kSecondMs)); }

    void Call(int64_t from, int64_t lasts) {
        int64_t answered = from;
        Seconds(answered, 4, 15);
        const int64_t to = answered + lasts;
        plan_->During(While::CALL, answered, to);
        plan_->During(While::SCREEN, from, answered + 3 * kSecondMs);
        plan_->During(While::MOVING, answered - 2 * kSecondMs, to + 5 * kSecondMs);
        plan_->During(While::COVERED, answered + 3 * kSecondMs, to);
    }

    void Uses(int64_t from, int64_t to, int64_t everyMinutes) {
        for (int64_t t = from + Minutes(1, everyMinutes); t < to; t += Minutes(everyMinutes / 3, everyMinutes * 2)) {
            const int64_t lasts = dice_.Chance(70) ? dice_.Between(20 * kSecondMs, 3 * kMinuteMs) : Minutes(3, 20);
            const int64_t until = std::min(t + lasts, to);
            Look(t, until, 90);
            t = until;
        }
    }

    void Evening() {
        const int64_t sunset = At(date_, kSunset.at(month_));
        plan_->Light(start_, sunset > start_ ? person_.lampLux + 100 : person_.lampLux);
        if (sunset > start_) {
            plan_->Light(sunset, person_.lampLux);
        }
        if (const auto alarm = NextAlarm(date_ + 1)) {
            plan_->Alarm(start_, *alarm);
        }
        Uses(start_, bed_ - kReadingMs, person_.useEveryMinutes);
        for (int64_t messages = dice_.Between(0, 6); messages > 0; --messages) {
            Message(dice_.Between(start_, bed_ - kReadingMs));
        }
        if (dice_.Chance(25)) {
            const int64_t t = dice_.Between(start_, bed_ - kReadingMs);
            Call(t, Minutes(1, 30));
        }
        if (person_.hasHeadset && dice_.Chance(40)) {
            const int64_t from = dice_.Between(start_ - kHourMs, bed_ - kReadingMs);
            plan_->During(While::HEADSET, from, std::min(from + Minutes(30, 150), bed_));
        }
    }

    void GoToBed() {
        plan_->Remark(bed_, "lights out");
        const int64_t reading = std::clamp<int64_t>(dice_.About(25, 12), 5, 45) * kMinuteMs;
        int64_t lampOff = bed_;
        if (person_.bedTime == BedTime::PHONE) {
            Look(bed_ - reading, bed_, 100);
            lampOff -= dice_.Between(0, reading);
            plan_->Light(bed_, person_.nightLux);
        } else {
            Look(bed_ - reading - Minutes(1, 4), bed_ - reading, 80);
            Seconds(lampOff, 5, 240);
        }
        plan_->Light(lampOff, lampOff < bed_ ? kScreenLux : person_.nightLux);
        if (person_.isCovered) {
            plan_->During(While::COVERED, bed_ + kMinuteMs, up_);
        }
        if (person_.hearsMusic && dice_.Chance(70)) {
            plan_->During(While::AUDIO, bed_ - 2 * kMinuteMs, bed_ + Minutes(15, 60));
        }
    }

    void Sleep() {
        const int64_t from = bed_ + kHourMs;
        const int64_t to = wake_ - 30 * kMinuteMs;
        if (person_.place == Place::BED) {
            for (int64_t t = bed_ + Minutes(5, 40); t < to; t += Minutes(20, 150)) {
                plan_->During(While::MOVING, t, t + dice_.Between(4 * kSecondMs, kMinuteMs));
            }
        }
        for (int64_t looks = InTenNights(person_.looksPerTenNights); looks > 0; --looks) {
            const int64_t t = dice_.Between(from, to);
            const int64_t until = t + dice_.Between(8 * kSecondMs, 6 * kMinuteMs);
            plan_->Remark(t, "awake for a moment");
            Look(t, until, 50);
            plan_->Light(t, kScreenLux);
            plan_->Light(until, person_.nightLux);
        }
        for (int64_t messages = InTenNights(person_.messagesPerTenNights); messages > 0; --messages) {
            Message(dice_.Between(from, to));
        }
        if (dice_.PerMille(person_.life == Life::ON_CALL ? 150 : 15)) {
            const int64_t t = dice_.Between(from, to);
            plan_->Remark(t, "a call in the night");
            Call(t, Minutes(1, 20));
        }
    }

    /// The number for one night of what comes so often in ten.
    int64_t InTenNights(int64_t count) { return count / 10 + (dice_.Between(0, 9) < count % 10 ? 1 : 0); }

    void Dawn() {
        const int64_t sunrise = At(date_ + 1, kSunrise.at(month_));
        if (person_.hasCurtains || person_.isCovered) {
            return;
        }
        struct Light {
            int64_t minutes;  ///< after sunrise
            int64_t lux;
        };
        for (const Light& light : {Light{-25, 2}, Light{0, 8}, Light{25, 30}, Light{60, 90}}) {
            const int64_t t = sunrise + light.minutes * kMinuteMs;
            if (t > bed_ + kHourMs && t < up_) {
                plan_->Light(t, std::max(light.lux, person_.nightLux));
            }
        }
    }

    /// A bus or a plane: in a pocket, moving, some light, no lamp.
    void UnderWay() {
        const int64_t leaves = std::min(bed_, start_ + Minutes(60, 150));
        const int64_t arrives = up_ - Minutes(5, 60);
        plan_->Remark(leaves, "under way until the morning");
        plan_->During(While::MOVING, leaves, arrives);
        plan_->Light(leaves, dice_.Between(5, 30));
        plan_->Light(std::max(bed_, leaves + kMinuteMs), dice_.Between(0, 4));
        plan_->Light(arrives, 300);
        if (dice_.Chance(70)) {
            plan_->During(While::COVERED, bed_, arrives);
        }
        if (dice_.Chance(50)) {
            const int64_t after = Minutes(5, 30);
            plan_->During(While::AIRPLANE, leaves + after, arrives - Minutes(1, 4));
        }
        Uses(bed_, arrives - kHourMs, 90);
    }

    void Charge() {
        if (where_.isUnderWay) {
            return;
        }
        if (person_.charging == Charging::OVERNIGHT && dice_.Chance(92)) {
            const int64_t before = Minutes(0, 30);
            plan_->During(While::CHARGER, bed_ - before, up_ + Minutes(0, 20));
        } else if (person_.charging == Charging::EVENING && dice_.Chance(80)) {
            const int64_t from = dice_.Between(start_ - kHourMs, bed_ - kHourMs);
            plan_->During(While::CHARGER, from, from + Minutes(45, 150));
        } else if (dice_.Chance(10)) {
            const int64_t before = Minutes(0, 60);
            plan_->During(While::SAVING, bed_ - before, up_ + Minutes(5, 30));
        } else if (dice_.Chance(30)) {
            plan_->During(While::CHARGER, up_ + Minutes(2, 15), end_ + kHourMs);
        }
    }

    void Radios() {
        if (person_.hasAirplaneNights && !where_.isUnderWay) {
            const int64_t before = Minutes(0, 2);
            plan_->During(While::AIRPLANE, bed_ - before, up_ + Minutes(0, 3));
        }
        if (person_.hasWifiOffNights) {
            const int64_t before = Minutes(0, 5);
            plan_->During(While::WIFI_OFF, bed_ - before, up_ + Minutes(1, 20));
        }
    }

    void Wake() {
        int64_t rings = wake_;
        plan_->Remark(wake_, rings_ ? "the alarm rings" : "awake");
        for (int i = 0; rings_ && i < snoozes_; ++i, rings += kSnoozeMs) {
            int64_t silenced = rings;
            Seconds(silenced, 4, 40);
            plan_->During(While::SCREEN, rings, silenced);
            plan_->During(While::MOVING, silenced - 2 * kSecondMs, silenced + 2 * kSecondMs);
            plan_->Alarm(silenced, rings + kSnoozeMs);
        }
        Look(up_, up_ + dice_.Between(20 * kSecondMs, 4 * kMinuteMs), 100);
        plan_->Light(up_ + dice_.Between(5 * kSecondMs, 90 * kSecondMs), person_.lampLux);
        plan_->Relaunch(up_ + Minutes(2, 6));
        if (rings_) {
            const int64_t silenced = up_ + dice_.Between(3 * kSecondMs, 15 * kSecondMs);
            if (const auto next = NextAlarm(date_ + 2)) {
                plan_->Alarm(silenced, *next);
            } else {
                plan_->NoAlarm(silenced);
            }
        }
        Uses(up_ + 6 * kMinuteMs, end_ - 15 * kMinuteMs, 12);
        if (IsWorkday(person_, date_ + 1)) {
            const int64_t leaves = end_ - Minutes(2, 14);
            plan_->During(While::MOVING, leaves, end_ + kHourMs);
            plan_->During(While::COVERED, leaves, end_ + kHourMs);
        }
    }

    static constexpr int64_t kReadingMs = 50 * kMinuteMs;  ///< more than anybody reads in bed

    const Person& person_;
    const Whereabouts& where_;
    int64_t date_;
    LocalClock& clock_;
    Dice dice_;
    size_t month_;  ///< from 0
    std::optional<NightPlan> plan_;
    std::optional<int64_t> rings_;  ///< the alarm of this morning
    int snoozes_ = 0;
    int64_t start_ = 0;
    int64_t bed_ = 0;
    int64_t wake_ = 0;  ///< or the first ring
    int64_t up_ = 0;
    int64_t end_ = 0;
};

}  // namespace

Whereabouts WhereIs(uint64_t seed, uint64_t number, const Person& person, uint64_t day) {
    constexpr uint64_t kPeriodDays = 28;  // with one trip at most
    Dice dice(Dice::Mix(Dice::Mix(Dice::Mix(seed, kTrips), number), day / kPeriodDays));
    if (!person.travels || !dice.Chance(30)) {
        return {};
    }
    const int64_t nights = dice.Between(2, 5);
    const int64_t first = dice.Between(0, static_cast<int64_t>(kPeriodDays) - nights);
    std::array<int, kDestinations.size()> weights{};
    std::transform(kDestinations.begin(), kDestinations.end(), weights.begin(),
                   [](const Destination& one) { return one.weight; });
    const Destination& destination = kDestinations.at(dice.Pick(weights));
    const bool isByNight = dice.Chance(50);
    const int64_t nightsThere = static_cast<int64_t>(day % kPeriodDays) - first;
    if (nightsThere < 0 || nightsThere >= nights) {
        return {};
    }
    if (isByNight && nightsThere == 0) {
        return {.zone = {}, .isUnderWay = true};
    }
    return {destination.zone, destination.hoursAhead, nightsThere - (isByNight ? 1 : 0), false};
}

void WriteGeneratedNight(uint64_t seed, const Person& person, const Whereabouts& where, int64_t date,
                         const std::string& title, LocalClock& clock, std::ostream& output) {
    TraceWriter writer(output, clock, TimeStyle::FULL);
    Maker(Dice::Mix(seed, kNights), person, where, date, clock).Make(title, GeneratedHost(), writer);
}

}  // namespace TARN::Authoring
