#include "actions/enums/StringFilterOption.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <string>

namespace tabwright::actions {

namespace {

icu::UnicodeString lowercased(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())))
      .toLower(icu::Locale::getRoot());
}

} // namespace

bool passes(StringFilterOption filter, std::string_view item, std::string_view filterText) {
  switch (filter) {
  case StringFilterOption::ignore:
    return true;
  case StringFilterOption::contains:
    return filterText.empty() || lowercased(item).indexOf(lowercased(filterText)) >= 0;
  case StringFilterOption::containsCaseSensitive:
    return item.find(filterText) != std::string_view::npos;
  case StringFilterOption::equals:
    return item == filterText;
  }
  return false;
}

} // namespace tabwright::actions
