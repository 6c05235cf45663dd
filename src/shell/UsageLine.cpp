#include "shell/UsageLine.h"

#include "shell/WindowText.h"

#include <unicode/calendar.h>

#include <algorithm>
#include <memory>

namespace tabwright::shell {
namespace {

constexpr double referenceDate = 978307200; // seconds from 1970 to 2001
constexpr std::int64_t fortnight = 14;

} // namespace

std::int64_t wholeDays(double first, double last) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(status));
  if (U_FAILURE(status))
    return 0;
  calendar->setTime((first + referenceDate) * 1000, status);
  const std::int32_t days = calendar->fieldDifference((last + referenceDate) * 1000, UCAL_DATE, status);
  return U_FAILURE(status) ? 0 : std::max(days, 0);
}

std::string usageLine(std::int64_t days, std::int64_t count) {
  const std::string calls = std::to_string(count);
  if (days < fortnight)
    return count == 1 ? windowText("usage.once") : windowText("usage.times", {calls});
  const std::string span = std::to_string(days);
  return count == 1 ? windowText("usage.days.once", {span}) : windowText("usage.days.times", {span, calls});
}

} // namespace tabwright::shell
