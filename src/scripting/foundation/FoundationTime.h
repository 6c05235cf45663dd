#pragma once

#include "applescript/values/Value.h"

namespace tabwright::scripting {

/// Seconds from 1970-01-01 to 2001-01-01 00:00:00 UTC, Foundation's reference date.
inline constexpr double referenceDate = 978307200;

/// A moment as the local wall clock shows it, by the process's time zone. One without a local time is taken for UTC.
[[nodiscard]] applescript::Date localDate(double secondsSince1970);
/// The moment at which the local wall clock shows a date; of two such moments, in an hour that a clock change repeats,
/// one of them.
[[nodiscard]] double secondsSince1970(applescript::Date date);

} // namespace tabwright::scripting
