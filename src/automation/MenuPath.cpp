// A regular expression of ICU's, since white space around the separator is any that Unicode knows.
#include "automation/MenuPath.h"

#include "platform/Whitespace.h"

#include <fmt/ranges.h>
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <cstdint>

namespace tabwright::automation {

std::vector<std::string> segmentsOfPath(std::string_view path) {
  const std::string_view trimmed = platform::trimmingWhitespaceAndNewlines(path);
  UErrorCode status = U_ZERO_ERROR;
  icu::RegexMatcher separators(icu::UnicodeString(R"(\s*[>\U0010018A]+\s*)"), 0, status);
  const auto text = icu::UnicodeString::fromUTF8({trimmed.data(), static_cast<std::int32_t>(trimmed.size())});
  separators.reset(text);

  std::vector<std::string> segments;
  const auto add = [&](std::int32_t from, std::int32_t to) {
    if (from < to)
      text.tempSubStringBetween(from, to).toUTF8String(segments.emplace_back());
  };
  std::int32_t from = 0;
  while (separators.find(status) && U_SUCCESS(status)) {
    add(from, separators.start(status));
    from = separators.end(status);
  }
  add(from, text.length());
  return segments;
}

std::string pathOf(std::span<const std::string> segments) {
  return fmt::format("{}", fmt::join(segments, " > "));
}

} // namespace tabwright::automation
