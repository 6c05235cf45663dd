#pragma once

#include <cstdint>
#include <string>

namespace tabwright::shell {

/// The number of whole days between two times by the calendar of the user's time zone: a day that a clock change made
/// shorter counts as one. Both are seconds since 2001-01-01 00:00:00 UTC; 0 where `last` is before `first`.
[[nodiscard]] std::int64_t wholeDays(double first, double last);

/// The sentence of how often actions were called, in the user's language. The days are told from a fortnight on.
[[nodiscard]] std::string usageLine(std::int64_t days, std::int64_t count);

} // namespace tabwright::shell
