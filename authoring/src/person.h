#ifndef AUTHORING_PERSON_H
#define AUTHORING_PERSON_H

#include <array>
#include <cstdint>
#include <string_view>

#include "ordinary_phone.h"

namespace TARN::Authoring {

enum class Life : uint8_t { OFFICE, EARLY, STUDENT, RETIRED, ON_CALL };
enum class Charging : uint8_t { OVERNIGHT, EVENING, ELSEWHERE };
enum class Place : uint8_t { NIGHT_STAND, BED, OTHER_ROOM };
enum class BedTime : uint8_t { PHONE, BOOK, SLEEP };

inline constexpr std::array<std::string_view, 5> kLifeNames = {"works in an office", "starts work early", "studies",
                                                               "is retired", "is on call"};

/// Somebody with habits and a phone. Times of day are minutes since midnight.
struct Person {
    Life life = Life::OFFICE;
    int64_t workdayWake = 0;
    int64_t freeWake = 0;
    int64_t sleepMinutes = 0;
    bool hasWorkdayAlarm = false;
    bool hasFreeAlarm = false;
    bool snoozes = false;
    Charging charging = Charging::OVERNIGHT;
    Place place = Place::NIGHT_STAND;
    bool isCovered = false;  ///< face down, or under a pillow
    BedTime bedTime = BedTime::SLEEP;
    bool hearsMusic = false;
    bool hasHeadset = false;
    int64_t looksPerTenNights = 0;     ///< at the phone, in the middle of the night
    int64_t messagesPerTenNights = 0;  ///< that light the screen while its owner sleeps
    bool hasAirplaneNights = false;
    bool hasWifiOffNights = false;
    bool travels = false;
    bool hasCurtains = false;
    int64_t useEveryMinutes = 0;  ///< in the evening
    int64_t lampLux = 0;
    int64_t nightLux = 0;
    Json device;  ///< of a trace's header
};

/// The person of this number among those of a seed.
[[nodiscard]] Person MakePerson(uint64_t seed, uint64_t number);

/// The configuration of all their phones.
[[nodiscard]] Json GeneratedHost();

}  // namespace TARN::Authoring

#endif  // AUTHORING_PERSON_H
