#ifndef AUTHORING_NEW_NIGHT_H
#define AUTHORING_NEW_NIGHT_H

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace TARN::Authoring {

/// A night as a person asks for it. Times are times of day, "06:30" or "06:30:15", or local times, "2026-03-02T06:30";
/// stretches are "23:00-05:00" or "02:00+10m". Each is the first one from noon of the date on, or from the start where
/// that is given.
struct NewNight {
    std::string timezone;
    std::string date;   ///< of the evening, "2026-03-01"; empty: today
    std::string start;  ///< empty: 21:00, or ten minutes before what comes first
    std::string end;    ///< empty: half an hour after what comes last
    std::string bed = "23:00";
    bool isBedGiven = false;
    std::string alarm = "07:00";      ///< "none": no alarm
    std::vector<std::string> screen;  ///< none: lit from the start until bed time
    std::vector<std::string> calls;   ///< one that is a time only lasts ten minutes
    std::vector<std::string> charger;
    std::vector<std::string> airplane;
    std::vector<std::string> headset;
    std::vector<std::string> music;
};

/// Writes a commented night of an ordinary phone. `nowMs` tells what day it is. Throws InputError, behind the option's
/// name, for what cannot be.
void WriteNewNight(const NewNight& night, int64_t nowMs, std::ostream& output);

}  // namespace TARN::Authoring

#endif  // AUTHORING_NEW_NIGHT_H
