// Titles are composed (NFC) before they are compared, the wanted one once and each title when it comes: toolkits and
// users may write a letter with its mark as one character or as two. ICU's matcher has a limit of its own, since the
// expression is a user's and the titles are an application's.
#include "automation/TitlePattern.h"

#include "platform/Whitespace.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>

#include <algorithm>
#include <cstdint>

namespace tabwright::automation {

namespace {

constexpr std::string_view periods = "...";
constexpr std::string_view ellipsis = "\u2026";
constexpr std::int32_t longestMatching = 100; ///< in ICU's steps, of some milliseconds each at most

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

icu::UnicodeString composed(const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString result = icu::Normalizer2::getNFCInstance(status)->normalize(text, status);
  return U_SUCCESS(status) ? result : text;
}

std::string withEnding(std::string_view text, std::string_view ending, std::string_view other) {
  return std::string(text.substr(0, text.size() - ending.size())) + std::string(other);
}

} // namespace

std::vector<std::string> possibleTitleValues(std::string_view wanted, TitleCase titleCase) {
  std::vector<std::string> values{std::string(wanted)};
  if (wanted.ends_with(periods))
    values.push_back(withEnding(wanted, periods, ellipsis));
  else if (wanted.ends_with(ellipsis))
    values.push_back(withEnding(wanted, ellipsis, periods));
  for (std::string& value : values) {
    value = platform::trimmingWhitespaceAndNewlines(value);
    if (titleCase == TitleCase::ignored) {
      const icu::UnicodeString lower = unicode(value).toLower(icu::Locale::getRoot());
      value.clear();
      lower.toUTF8String(value);
    }
  }
  return values;
}

TitlePattern::TitlePattern(std::string_view wanted, StringFilterEnum filter, TitleCase titleCase)
    : filter_(filter), titleCase_(titleCase) {
  for (const std::string& value : possibleTitleValues(wanted, titleCase)) {
    values_.push_back(composed(unicode(value)));
    if (filter != StringFilterEnum::regex)
      continue;
    UErrorCode status = U_ZERO_ERROR;
    UParseError place;
    const std::uint32_t flags = titleCase == TitleCase::ignored ? UREGEX_CASE_INSENSITIVE : 0;
    std::unique_ptr<icu::RegexPattern> expression(icu::RegexPattern::compile(values_.back(), flags, place, status));
    // Kept as null, so that expressions and values share their index.
    expressions_.push_back(U_SUCCESS(status) ? std::move(expression) : nullptr);
  }
}

icu::UnicodeString TitlePattern::comparable(std::string_view title) const {
  icu::UnicodeString text = unicode(title);
  return composed(titleCase_ == TitleCase::ignored ? text.toLower(icu::Locale::getRoot()) : text);
}

bool TitlePattern::isTitle(std::string_view title) const {
  return std::ranges::find(values_, comparable(title)) != values_.end();
}

bool TitlePattern::fits(std::string_view title) {
  const icu::UnicodeString text = comparable(title);
  for (std::size_t value = 0; value < values_.size(); ++value) {
    if (fits(text, value))
      return true;
  }
  return false;
}

bool TitlePattern::fits(const icu::UnicodeString& title, std::size_t value) {
  const icu::UnicodeString& wanted = values_[value];
  switch (filter_) {
  case StringFilterEnum::isExactly:
    return title == wanted;
  case StringFilterEnum::contains:
    return title.indexOf(wanted) >= 0;
  case StringFilterEnum::beginsWith:
    return title.startsWith(wanted) != 0;
  case StringFilterEnum::endsWith:
    return title.endsWith(wanted) != 0;
  case StringFilterEnum::regex: {
    if (!expressions_[value])
      return false;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(expressions_[value]->matcher(title, status));
    if (U_FAILURE(status))
      return false;
    matcher->setTimeLimit(longestMatching, status);
    const bool isFound = matcher->find(status) != 0;
    if (U_FAILURE(status))
      expressions_[value].reset();
    return isFound && U_SUCCESS(status);
  }
  }
  return false;
}

} // namespace tabwright::automation
