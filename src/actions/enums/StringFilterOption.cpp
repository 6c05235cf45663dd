// Canonically equivalent texts are one text: a title is found whichever way its letters were composed.
#include "actions/enums/StringFilterOption.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <string>

namespace tabwright::actions {

namespace {

bool isASCII(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

// NFC. Texts that ICU can't compose are compared as they are.
icu::UnicodeString composed(const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
  icu::UnicodeString result = U_SUCCESS(status) ? normalizer->normalize(text, status) : text;
  return U_SUCCESS(status) ? result : text;
}

icu::UnicodeString lowercased(std::string_view text) {
  return composed(unicode(text).toLower(icu::Locale::getRoot()));
}

} // namespace

bool passes(StringFilterOption filter, std::string_view item, std::string_view filterText) {
  const bool areASCII = isASCII(item) && isASCII(filterText); // nothing in them composes
  switch (filter) {
  case StringFilterOption::ignore:
    return true;
  case StringFilterOption::contains:
    return filterText.empty() || lowercased(item).indexOf(lowercased(filterText)) >= 0;
  case StringFilterOption::containsCaseSensitive:
    // A plain search where no letter can be composed in two ways: most titles and addresses are ASCII.
    if (areASCII || filterText.empty())
      return item.find(filterText) != std::string_view::npos;
    return composed(unicode(item)).indexOf(composed(unicode(filterText))) >= 0;
  case StringFilterOption::equals:
    return item == filterText || (!areASCII && composed(unicode(item)) == composed(unicode(filterText)));
  }
  return false;
}

} // namespace tabwright::actions
