#pragma once

#include "applescript/terminology/FourCharCode.h"
#include "applescript/values/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::applescript {

/// A date taken apart, on the proleptic Gregorian calendar (the one of ISO 8601) and the local wall clock. Without time
/// zone and daylight saving time: each day has 86,400 seconds.
struct CalendarDate {
  std::int64_t year = 2001;
  /// From 1 for January.
  unsigned month = 1;
  unsigned day = 1;
  /// From 0 at midnight to 86,399.
  unsigned secondsOfDay = 0;
};

/// Fractions of seconds are dropped. A date more than about 30,000 years from 2001 comes out as 2001-01-01.
[[nodiscard]] CalendarDate calendarDate(Date date);
/// Days beyond the end of their month carry over: day 31 of February is in March. The month must be one of 1 to 12, the
/// year within 32,767.
[[nodiscard]] Date dateFrom(const CalendarDate& parts);

/// A date as text spells it: `2026-01-31 10:00:00` (ISO 8601, with blank or `T`), `1/31/2026 10:00 PM`, `January 31,
/// 2026`, `31 January 2026`, `Saturday, January 31, 2026 at 10:00:00 AM`, or a time alone, which is on the day of
/// `now`. A day without a year is in the year of `now`, and one without a time at midnight; years of two digits are
/// from 2000 on. Names are English, whole or from three letters on, ignoring case. Nothing for any other text.
[[nodiscard]] std::optional<Date> dateFromText(std::string_view text, Date now);

/// `Saturday, January 31, 2026 at 10:00:00 AM`, and its parts: `Saturday, January 31, 2026`, `1/31/26`, `10:00:00 AM`.
[[nodiscard]] std::string dateText(Date date);
[[nodiscard]] std::string longDateText(Date date);
[[nodiscard]] std::string shortDateText(Date date);
[[nodiscard]] std::string timeText(Date date);

/// `year`, `month`, `day`, `weekday`, `hours`, `minutes`, `seconds`, `time`, `date string`, `short date string`,
/// `time string` of a date; nothing for another property.
[[nodiscard]] std::optional<Value> dateProperty(Date date, FourCharCode property);
/// The date with one of the settable of these changed; nothing when it can't be. `value` must be an integer or, for
/// `month`, also a month. Days, hours, minutes and seconds beyond their ends carry over, as does a day that the new
/// month lacks; years are 1 to 9999, months 1 to 12.
[[nodiscard]] std::optional<Date> withDateProperty(Date date, FourCharCode property, const Value& value);

/// 1 for January; nothing for another constant.
[[nodiscard]] std::optional<int> monthOf(const Enumerator& constant);
/// 1 for Sunday; nothing for another constant.
[[nodiscard]] std::optional<int> weekdayOf(const Enumerator& constant);

} // namespace tabwright::applescript
