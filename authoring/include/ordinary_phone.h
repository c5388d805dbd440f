#ifndef AUTHORING_ORDINARY_PHONE_H
#define AUTHORING_ORDINARY_PHONE_H

#include <cstdint>
#include <string>

#include <nlohmann/json.hpp>

#include "time_zone.h"

namespace TARN::Authoring {

using Json = nlohmann::ordered_json;

/// The "host" of a trace's header for a phone as one would expect it.
[[nodiscard]] Json OrdinaryHost();

/// Its "device": in use, unplugged, in a room with the lamp on, with a few applications and natives. Nothing is said of
/// its movement and of an alarm.
[[nodiscard]] Json OrdinaryDevice();

/// The header's line of a trace for this phone at 21:00 local time of today, `nowMs`, moved about, with an alarm in the
/// morning. The time zone must be in use.
[[nodiscard]] std::string OrdinaryPhone(const Replay::TimeZone& zone, int64_t nowMs);

}  // namespace TARN::Authoring

#endif  // AUTHORING_ORDINARY_PHONE_H
