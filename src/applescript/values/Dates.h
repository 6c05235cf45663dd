#pragma once

#include "applescript/terminology/FourCharCode.h"
#include "applescript/values/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::applescript {

/// A date taken apart, on the proleptic Gregorian calendar.
struct CalendarDate {
  std::int64_t year = 2001;
  unsigned month = 1;
  unsigned day = 1;
  unsigned secondsOfDay = 0;
};

[[nodiscard]] CalendarDate calendarDate(Date date);
/// Months and days beyond their ends carry over: day 31 of February is in March.
[[nodiscard]] Date dateFrom(const CalendarDate& parts);

/// A date as text spells it: `2026-01-31 10:00:00` (ISO 8601, with blank or `T`), `1/31/2026 10:00 PM`, `January 31,
/// 2026`, `31 January 2026`, `Saturday, January 31, 2026 at 10:00:00 AM`, or a time alone, which is on the day of
/// `now`. Nothing for any other text.
[[nodiscard]] std::optional<Date> dateFromText(std::string_view text, Date now);

/// `Saturday, January 31, 2026 at 10:00:00 AM`, and its parts.
[[nodiscard]] std::string dateText(Date date);
[[nodiscard]] std::string longDateText(Date date);
[[nodiscard]] std::string shortDateText(Date date);
[[nodiscard]] std::string timeText(Date date);

/// `year`, `month`, `day`, `weekday`, `hours`, `minutes`, `seconds`, `time`, `date string`, `short date string`,
/// `time string` of a date; nothing for another property.
[[nodiscard]] std::optional<Value> dateProperty(Date date, FourCharCode property);
/// The date with one of the settable of these changed; nothing when it can't be. `value` must be an integer or, for
/// `month`, also a month.
[[nodiscard]] std::optional<Date> withDateProperty(Date date, FourCharCode property, const Value& value);

/// 1 for January; nothing for another constant.
[[nodiscard]] std::optional<int> monthOf(const Enumerator& constant);
/// 1 for Sunday; nothing for another constant.
[[nodiscard]] std::optional<int> weekdayOf(const Enumerator& constant);

} // namespace tabwright::applescript
