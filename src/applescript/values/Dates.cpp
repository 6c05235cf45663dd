// A date is a count of seconds on the wall clock, so that no time zone takes part here: days are counted by the chrono
// calendar. Texts are taken apart into numbers, words and marks, and the parts of a date told by what stands between
// them; names are the English ones, whatever the language of the system.
#include "applescript/values/Dates.h"

#include "applescript/terminology/Codes.h"
#include "applescript/values/Names.h"

#include <fmt/core.h>

#include <array>
#include <chrono>
#include <cmath>
#include <vector>

namespace tabwright::applescript {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr sys_days epoch = std::chrono::year{2001} / std::chrono::January / 1;
constexpr std::int64_t secondsPerDay = 86400;
// The years that the chrono calendar can hold, with room.
constexpr double furthest = 30000.0 * 366 * secondsPerDay;

struct NamedDay {
  FourCharCode code;
  std::string_view name;
};
constexpr std::array<NamedDay, 12> months{{{fourCharCode("jan "), "January"},
                                           {fourCharCode("feb "), "February"},
                                           {fourCharCode("mar "), "March"},
                                           {fourCharCode("apr "), "April"},
                                           {fourCharCode("may "), "May"},
                                           {fourCharCode("jun "), "June"},
                                           {fourCharCode("jul "), "July"},
                                           {fourCharCode("aug "), "August"},
                                           {fourCharCode("sep "), "September"},
                                           {fourCharCode("oct "), "October"},
                                           {fourCharCode("nov "), "November"},
                                           {fourCharCode("dec "), "December"}}};
constexpr std::array<NamedDay, 7> weekdays{{{fourCharCode("sun "), "Sunday"},
                                            {fourCharCode("mon "), "Monday"},
                                            {fourCharCode("tue "), "Tuesday"},
                                            {fourCharCode("wed "), "Wednesday"},
                                            {fourCharCode("thu "), "Thursday"},
                                            {fourCharCode("fri "), "Friday"},
                                            {fourCharCode("sat "), "Saturday"}}};

template <std::size_t count>
std::optional<int> positionOf(const std::array<NamedDay, count>& names, FourCharCode code) {
  for (std::size_t index = 0; index < count; ++index) {
    if (names[index].code == code)
      return static_cast<int>(index + 1);
  }
  return {};
}

// "Jan" and "January" both name the month.
template <std::size_t count>
std::optional<unsigned> positionOf(const std::array<NamedDay, count>& names, std::string_view word) {
  for (std::size_t index = 0; index < count; ++index) {
    if (word.size() >= 3 && sameName(names[index].name.substr(0, word.size()), word))
      return static_cast<unsigned>(index + 1);
  }
  return {};
}

// Dates that the calendar can't hold, and NaN, count as the first moment of 2001.
std::int64_t wholeSeconds(Date date) {
  if (!(std::abs(date.seconds) < furthest))
    return 0;
  return static_cast<std::int64_t>(std::floor(date.seconds));
}

std::int64_t dayNumber(Date date) {
  // Rounded down before 2001 as well: the time of day is never negative.
  const std::int64_t seconds = wholeSeconds(date);
  return seconds >= 0 ? seconds / secondsPerDay : -((-seconds + secondsPerDay - 1) / secondsPerDay);
}

struct Token {
  enum class Kind { number, word, mark } kind;
  std::int64_t number = 0;
  std::size_t digits = 0;
  std::string_view text;
};

std::vector<Token> tokensOf(std::string_view text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  std::vector<Token> tokens;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    if (isDigit(text[at])) {
      std::int64_t number = 0;
      // Further digits are dropped: the number is too large for any part of a date as it is.
      for (; at < text.size() && isDigit(text[at]); ++at)
        number = number < 1'000'000'000 ? number * 10 + (text[at] - '0') : number;
      tokens.push_back({Token::Kind::number, number, at - start, text.substr(start, at - start)});
    } else if (isLetter(text[at])) {
      while (at < text.size() && isLetter(text[at]))
        ++at;
      // The T of ISO 8601 and the commas and blanks of the long form carry nothing.
      if (const auto word = text.substr(start, at - start); !sameName(word, "t") && !sameName(word, "at"))
        tokens.push_back({Token::Kind::word, 0, 0, word});
    } else {
      ++at;
      if (const char c = text[start]; c != ' ' && c != ',')
        tokens.push_back({Token::Kind::mark, 0, 0, text.substr(start, 1)});
    }
  }
  return tokens;
}

// Reads a day, a time, or a time behind a day. A text with anything left over is no date.
class DateReader {
public:
  DateReader(std::string_view text, Date now) : tokens_(tokensOf(text)), parts_(calendarDate(now)) {}

  std::optional<Date> read() {
    if (tokens_.empty())
      return {};
    parts_.secondsOfDay = 0;
    // A colon behind the first token: a time alone.
    if (!isMark(1, ":") && !readDay())
      return {};
    if (at_ < tokens_.size() && !readTime())
      return {};
    if (at_ != tokens_.size())
      return {};
    return dateFrom(parts_);
  }

private:
  [[nodiscard]] bool isNumber(std::size_t ahead) const {
    return at_ + ahead < tokens_.size() && tokens_[at_ + ahead].kind == Token::Kind::number;
  }
  [[nodiscard]] bool isWord(std::size_t ahead) const {
    return at_ + ahead < tokens_.size() && tokens_[at_ + ahead].kind == Token::Kind::word;
  }
  [[nodiscard]] bool isMark(std::size_t ahead, std::string_view mark) const {
    return at_ + ahead < tokens_.size() && tokens_[at_ + ahead].text == mark;
  }
  [[nodiscard]] std::int64_t number(std::size_t ahead) const { return tokens_[at_ + ahead].number; }

  bool setDay(std::int64_t year, std::int64_t month, std::int64_t day, std::size_t yearDigits) {
    if (month < 1 || month > 12 || day < 1 || day > 31 || year > 9999)
      return false;
    // Days beyond a month's end carry over in `dateFrom`.
    parts_.year = yearDigits <= 2 ? 2000 + year : year;
    parts_.month = static_cast<unsigned>(month);
    parts_.day = static_cast<unsigned>(day);
    return true;
  }

  bool readDay() {
    // The day of the week is read over, and not held against the date.
    if (isWord(0) && positionOf(weekdays, tokens_[at_].text) && !positionOf(months, tokens_[at_].text))
      ++at_;
    for (const std::string_view mark : {"-", "/"}) {
      if (!(isNumber(0) && isMark(1, mark) && isNumber(2) && isMark(3, mark) && isNumber(4)))
        continue;
      // `2026-01-31` by its digits, else month, day and year as in the United States.
      const bool yearFirst = tokens_[at_].digits > 2;
      const bool valid = yearFirst ? setDay(number(0), number(2), number(4), tokens_[at_].digits)
                                   : setDay(number(4), number(0), number(2), tokens_[at_ + 4].digits);
      at_ += 5;
      return valid;
    }
    if (!((isWord(0) && isNumber(1)) || (isNumber(0) && isWord(1))))
      return false;
    // `January 31` or `31 January`.
    const std::size_t wordAt = isWord(0) ? 0 : 1;
    const auto month = positionOf(months, tokens_[at_ + wordAt].text);
    if (!month)
      return false;
    const std::int64_t day = number(1 - wordAt);
    at_ += 2;
    // "January 31" without a year is in this one.
    if (isNumber(0) && !isMark(1, ":")) {
      const bool valid = setDay(number(0), *month, day, tokens_[at_].digits);
      ++at_;
      return valid;
    }
    return setDay(parts_.year, *month, day, 4);
  }

  bool readTime() {
    if (!(isNumber(0) && isMark(1, ":") && isNumber(2)))
      return false;
    std::int64_t hour = number(0);
    const std::int64_t minute = number(2);
    std::int64_t second = 0;
    at_ += 3;
    if (isMark(0, ":") && isNumber(1)) {
      second = number(1);
      at_ += 2;
    }
    if (isWord(0) && (sameName(tokens_[at_].text, "AM") || sameName(tokens_[at_].text, "PM"))) {
      if (hour < 1 || hour > 12)
        return false;
      // 12 AM is midnight, 12 PM noon.
      hour = hour % 12 + (sameName(tokens_[at_].text, "PM") ? 12 : 0);
      ++at_;
    }
    if (hour > 23 || minute > 59 || second > 59)
      return false;
    parts_.secondsOfDay = static_cast<unsigned>(hour * 3600 + minute * 60 + second);
    return true;
  }

  std::vector<Token> tokens_;
  CalendarDate parts_;
  std::size_t at_ = 0;
};

} // namespace

CalendarDate calendarDate(Date date) {
  const std::int64_t day = dayNumber(date);
  const std::chrono::year_month_day calendar{epoch + days{day}};
  return {static_cast<int>(calendar.year()), static_cast<unsigned>(calendar.month()),
          static_cast<unsigned>(calendar.day()), static_cast<unsigned>(wholeSeconds(date) - day * secondsPerDay)};
}

Date dateFrom(const CalendarDate& parts) {
  const sys_days monthStart =
      std::chrono::year{static_cast<int>(parts.year)} / std::chrono::month{parts.month} / std::chrono::day{1};
  // The calendar takes no day 31 of February, but days can be added to the first.
  const auto day = (monthStart + days{static_cast<int>(parts.day) - 1} - epoch).count();
  return {static_cast<double>(day) * secondsPerDay + parts.secondsOfDay};
}

std::optional<Date> dateFromText(std::string_view text, Date now) {
  return DateReader(text, now).read();
}

std::optional<int> monthOf(const Enumerator& constant) {
  return positionOf(months, constant.code);
}

std::optional<int> weekdayOf(const Enumerator& constant) {
  return positionOf(weekdays, constant.code);
}

namespace {

const NamedDay& weekdayAt(Date date) {
  // Encoded from Sunday on, as the table is.
  return weekdays[std::chrono::weekday{epoch + days{dayNumber(date)}}.c_encoding()];
}

} // namespace

std::string longDateText(Date date) {
  const CalendarDate parts = calendarDate(date);
  return fmt::format("{}, {} {}, {}", weekdayAt(date).name, months[parts.month - 1].name, parts.day, parts.year);
}

std::string shortDateText(Date date) {
  const CalendarDate parts = calendarDate(date);
  return fmt::format("{}/{}/{:02}", parts.month, parts.day, parts.year % 100);
}

std::string timeText(Date date) {
  const unsigned seconds = calendarDate(date).secondsOfDay;
  const unsigned hour = seconds / 3600;
  return fmt::format("{}:{:02}:{:02} {}", hour % 12 == 0 ? 12 : hour % 12, seconds / 60 % 60, seconds % 60,
                     hour < 12 ? "AM" : "PM");
}

std::string dateText(Date date) {
  return fmt::format("{} at {}", longDateText(date), timeText(date));
}

std::optional<Value> dateProperty(Date date, FourCharCode property) {
  const CalendarDate parts = calendarDate(date);
  const auto integer = [](auto number) { return Value(static_cast<std::int64_t>(number)); };
  const auto constant = [](const NamedDay& day) { return Value(Enumerator{day.code, std::string(day.name)}); };
  switch (property) {
  case codes::year:
    return integer(parts.year);
  case codes::month:
    return constant(months[parts.month - 1]);
  case codes::day:
    return integer(parts.day);
  case codes::weekday:
    return constant(weekdayAt(date));
  case codes::hours:
    return integer(parts.secondsOfDay / 3600);
  case codes::minutes:
    return integer(parts.secondsOfDay / 60 % 60);
  case codes::seconds:
    return integer(parts.secondsOfDay % 60);
  case codes::time:
    return integer(parts.secondsOfDay);
  case codes::dateString:
    return Value(longDateText(date));
  case codes::shortDateString:
    return Value(shortDateText(date));
  case codes::timeString:
    return Value(timeText(date));
  default:
    return {};
  }
}

std::optional<Date> withDateProperty(Date date, FourCharCode property, const Value& value) {
  CalendarDate parts = calendarDate(date);
  std::int64_t number = 0;
  if (const auto* integer = value.get<std::int64_t>())
    number = *integer;
  else if (const auto* constant = value.get<Value::EnumeratorPointer>(); constant && monthOf(**constant))
    number = *monthOf(**constant);
  else
    return {};
  const auto setTime = [&](std::int64_t hours, std::int64_t minutes, std::int64_t seconds) -> std::optional<Date> {
    // Added as seconds, so that hours, minutes and seconds beyond their ends carry over.
    parts.secondsOfDay = 0;
    return Date{dateFrom(parts).seconds + static_cast<double>(hours * 3600 + minutes * 60 + seconds)};
  };
  // Keeps the sums below within a few millennia, and products within 64 bits.
  if (std::abs(number) > 1'000'000)
    return {};
  const std::int64_t seconds = parts.secondsOfDay;
  switch (property) {
  case codes::year:
    if (number < 1 || number > 9999)
      return {};
    parts.year = number;
    return dateFrom(parts);
  case codes::month:
    if (number < 1 || number > 12)
      return {};
    parts.month = static_cast<unsigned>(number);
    return dateFrom(parts);
  case codes::day: {
    // Counted from the first of the month, so that 0 and 32 carry over.
    parts.day = 1;
    return Date{dateFrom(parts).seconds + static_cast<double>((number - 1) * secondsPerDay)};
  }
  case codes::hours:
    return setTime(number, seconds / 60 % 60, seconds % 60);
  case codes::minutes:
    return setTime(seconds / 3600, number, seconds % 60);
  case codes::seconds:
    return setTime(seconds / 3600, seconds / 60 % 60, number);
  case codes::time:
    return setTime(0, 0, number);
  default:
    return {};
  }
}

} // namespace tabwright::applescript
