#ifndef AUTHORING_GENERATOR_H
#define AUTHORING_GENERATOR_H

#include <cstdint>
#include <map>
#include <memory>
#include <ostream>
#include <string>

#include "time_zone.h"

namespace TARN::Authoring {

/// What a number of made-up nights has in common. The same gives the same nights.
struct Generation {
    uint64_t seed = 1;
    uint64_t people = 100;                   ///< night 1 is the first person's first, night 2 the second one's
    std::string timezone = "Europe/Berlin";  ///< where they live
    std::string firstDate = "2026-01-05";    ///< the first evening
};

/// Makes up nights of people with habits. Each night follows from the generation and its number alone.
class Generator {
public:
    /// Throws InputError for a zone or a date that does not exist.
    explicit Generator(Generation generation);
    ~Generator();
    Generator(const Generator&) = delete;
    Generator& operator=(const Generator&) = delete;

    /// Writes a night as a trace; the numbers begin with 1. Throws InputError for a night behind the year 9000.
    void Write(uint64_t number, std::ostream& output);

private:
    [[nodiscard]] const Replay::TimeZone& Zone(const std::string& name);

    Generation generation_;
    int64_t firstDay_ = 0;  ///< since the epoch
    std::map<std::string, Replay::TimeZone> zones_;
};

}  // namespace TARN::Authoring

#endif  // AUTHORING_GENERATOR_H
