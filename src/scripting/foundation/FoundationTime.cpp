#include "scripting/foundation/FoundationTime.h"

#include <cmath>
#include <ctime>

namespace tabwright::scripting {

namespace {

double offsetFromUTC(double secondsSince1970) {
  const auto moment = static_cast<std::time_t>(std::floor(secondsSince1970));
  std::tm parts{};
  return localtime_r(&moment, &parts) != nullptr ? static_cast<double>(parts.tm_gmtoff) : 0;
}

} // namespace

applescript::Date localDate(double secondsSince1970) {
  return {secondsSince1970 + offsetFromUTC(secondsSince1970) - referenceDate};
}

double secondsSince1970(applescript::Date date) {
  const double wallClock = date.seconds + referenceDate;
  // The offset is that of the moment sought: read at the clock's time taken for UTC, and once more at what comes of it.
  const double guess = wallClock - offsetFromUTC(wallClock);
  return wallClock - offsetFromUTC(guess);
}

} // namespace tabwright::scripting
