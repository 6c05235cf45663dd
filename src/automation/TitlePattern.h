#pragma once

#include "automation/StringFilterEnum.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::automation {

/// Upper and lower case count when titles are compared, or not.
enum class TitleCase { counts, ignored };

/// The texts that a title may have to be the wanted one. An ellipsis at the end may be three periods or the one
/// character, so such a text gets a twin: "Save..." and "Save…". Blanks at the ends are left out, and where case
/// doesn't count all is in lower case.
[[nodiscard]] std::vector<std::string> possibleTitleValues(std::string_view wanted, TitleCase titleCase);

/// A wanted title, ready to be compared with many. Canonically equivalent texts are the same title.
///
/// Titles are taken as they are, or in lower case where case doesn't count. So is a regular expression: its `\S` is
/// then a `\s`.
class TitlePattern {
public:
  /// Compiles an expression once. One that is none is no failure: it fits nothing.
  TitlePattern(std::string_view wanted, StringFilterEnum filter, TitleCase titleCase);

  /// True for a title that is one of the possible values, whatever the filter.
  [[nodiscard]] bool isTitle(std::string_view title) const;
  /// True for a title that one of the possible values fits by the filter. A value that is no regular expression fits
  /// none. One that takes longer than some 100 ms for a title fits neither that nor any after it.
  [[nodiscard]] bool fits(std::string_view title);

private:
  /// A title in the form that it is compared in: composed, and in lower case where case doesn't count.
  [[nodiscard]] icu::UnicodeString comparable(std::string_view title) const;
  [[nodiscard]] bool fits(const icu::UnicodeString& title, std::size_t value);

  StringFilterEnum filter_;
  TitleCase titleCase_;
  std::vector<icu::UnicodeString> values_;
  std::vector<std::unique_ptr<icu::RegexPattern>> expressions_; ///< of each value, for the filter `regex`; may be null
};

} // namespace tabwright::automation
