// Texts of ASCII letters, which nearly all are, are compared byte by byte. Everything else is made into a key first: a
// row of code points, normalised, folded and stripped of what the attributes ignore. Folding is the simple one, code
// point by code point, so that `findText` can tell lengths in the text itself.
#include "applescript/values/TextComparison.h"

#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace tabwright::applescript {

namespace {

bool isASCII(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool ignoresOnlyCase(const TextAttributes& attributes) {
  return attributes.considersDiacriticals && attributes.considersHyphens && attributes.considersPunctuation &&
         attributes.considersWhiteSpace && !attributes.considersNumericStrings;
}

bool isHyphen(UChar32 c) {
  return u_charType(c) == U_DASH_PUNCTUATION || c == 0xAD;
}

bool isIgnored(UChar32 c, const TextAttributes& attributes) {
  if (!attributes.considersHyphens && isHyphen(c))
    return true;
  if (!attributes.considersPunctuation && u_ispunct(c) && !isHyphen(c))
    return true;
  if (!attributes.considersWhiteSpace && u_isUWhiteSpace(c))
    return true;
  return !attributes.considersDiacriticals && u_charType(c) == U_NON_SPACING_MARK;
}

icu::UnicodeString normalised(std::string_view text, const TextAttributes& attributes) {
  auto plain = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* normalizer = attributes.considersDiacriticals ? icu::Normalizer2::getNFCInstance(status)
                                                                        : icu::Normalizer2::getNFDInstance(status);
  if (U_FAILURE(status))
    return plain;
  icu::UnicodeString result = normalizer->normalize(plain, status);
  return U_FAILURE(status) ? plain : result;
}

std::u32string keyOf(std::string_view text, const TextAttributes& attributes) {
  const icu::UnicodeString units = normalised(text, attributes);
  std::u32string key;
  for (int32_t at = 0; at < units.length(); at = units.moveIndex32(at, 1)) {
    const UChar32 c = units.char32At(at);
    if (!isIgnored(c, attributes))
      key += static_cast<char32_t>(attributes.considersCase ? c : u_foldCase(c, U_FOLD_CASE_DEFAULT));
  }
  if (!attributes.considersNumericStrings)
    return key;
  // A run of digits counts by its number, so its leading zeros say nothing.
  std::u32string shortened;
  bool inDigits = false;
  for (std::size_t at = 0; at < key.size(); ++at) {
    const bool isDigit = u_isdigit(static_cast<UChar32>(key[at]));
    const bool digitFollows = at + 1 < key.size() && u_isdigit(static_cast<UChar32>(key[at + 1]));
    if (key[at] == U'0' && !inDigits && digitFollows)
      continue;
    inDigits = isDigit;
    shortened += key[at];
  }
  return shortened;
}

struct FoldedText {
  std::u32string codePoints;
  std::vector<std::size_t> offsets; // of each code point, and the end
};

FoldedText folded(std::string_view text, std::size_t from, const TextAttributes& attributes) {
  FoldedText result;
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  for (auto at = static_cast<int64_t>(from); at < size;) {
    result.offsets.push_back(static_cast<std::size_t>(at));
    UChar32 c = 0;
    U8_NEXT_OR_FFFD(bytes, at, size, c);
    result.codePoints += static_cast<char32_t>(attributes.considersCase ? c : u_foldCase(c, U_FOLD_CASE_DEFAULT));
  }
  result.offsets.push_back(text.size());
  return result;
}

// One collator per thread and setting: opening one is slow, and using one from two threads isn't allowed.
const icu::Collator* collatorFor(const TextAttributes& attributes) {
  static thread_local std::unique_ptr<icu::Collator> collators[4];
  auto& collator = collators[(attributes.considersCase ? 1U : 0U) + (attributes.considersNumericStrings ? 2U : 0U)];
  if (!collator) {
    UErrorCode status = U_ZERO_ERROR;
    collator.reset(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
      collator.reset();
    if (collator) {
      collator->setStrength(attributes.considersCase ? icu::Collator::TERTIARY : icu::Collator::SECONDARY);
      collator->setAttribute(UCOL_NUMERIC_COLLATION, attributes.considersNumericStrings ? UCOL_ON : UCOL_OFF, status);
    }
  }
  return collator.get();
}

} // namespace

bool textEquals(std::string_view left, std::string_view right, const TextAttributes& attributes) {
  if (left == right)
    return true;
  const auto& [shorter, longer] = std::minmax(left, right, [](auto a, auto b) { return a.size() < b.size(); });
  // Whole pages are compared with a word. A letter of ASCII is equal to at most three bytes of anything else.
  if (ignoresOnlyCase(attributes) && longer.size() > 3 * shorter.size() && isASCII(shorter))
    return false;
  if (ignoresOnlyCase(attributes) && isASCII(left) && isASCII(right)) {
    return !attributes.considersCase && left.size() == right.size() &&
           std::ranges::equal(left, right, [](char a, char b) { return lower(a) == lower(b); });
  }
  return keyOf(left, attributes) == keyOf(right, attributes);
}

int compareText(std::string_view left, std::string_view right, const TextAttributes& attributes) {
  if (textEquals(left, right, attributes))
    return 0;
  const auto unicode = [](const std::u32string& key) {
    return icu::UnicodeString::fromUTF32(reinterpret_cast<const UChar32*>(key.data()),
                                         static_cast<int32_t>(key.size()));
  };
  const std::u32string leftKey = keyOf(left, attributes);
  const std::u32string rightKey = keyOf(right, attributes);
  if (const icu::Collator* collator = collatorFor(attributes)) {
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult order = collator->compare(unicode(leftKey), unicode(rightKey), status);
    if (U_SUCCESS(status) && order != UCOL_EQUAL)
      return order == UCOL_LESS ? -1 : 1;
  }
  return leftKey < rightKey ? -1 : 1;
}

bool textContains(std::string_view text, std::string_view part, const TextAttributes& attributes) {
  if (ignoresOnlyCase(attributes) && isASCII(text) && isASCII(part)) {
    if (attributes.considersCase)
      return text.find(part) != std::string_view::npos;
    return !std::ranges::search(text, part, [](char a, char b) { return lower(a) == lower(b); }).empty() ||
           part.empty();
  }
  return keyOf(text, attributes).find(keyOf(part, attributes)) != std::u32string::npos;
}

bool textBeginsWith(std::string_view text, std::string_view part, const TextAttributes& attributes) {
  return keyOf(text, attributes).starts_with(keyOf(part, attributes));
}

bool textEndsWith(std::string_view text, std::string_view part, const TextAttributes& attributes) {
  return keyOf(text, attributes).ends_with(keyOf(part, attributes));
}

std::optional<TextMatch> findText(std::string_view text, std::string_view part, std::size_t from,
                                  const TextAttributes& attributes) {
  if (part.empty() || from > text.size())
    return {};
  if (isASCII(part) && (attributes.considersCase || isASCII(text))) {
    const std::string_view tail = text.substr(from);
    const auto found = attributes.considersCase
                           ? std::ranges::search(tail, part)
                           : std::ranges::search(tail, part, [](char a, char b) { return lower(a) == lower(b); });
    if (found.empty())
      return {};
    return TextMatch{from + static_cast<std::size_t>(found.begin() - tail.begin()), part.size()};
  }
  const FoldedText where = folded(text, from, attributes);
  const FoldedText what = folded(part, 0, attributes);
  const std::size_t at = where.codePoints.find(what.codePoints);
  if (at == std::u32string::npos)
    return {};
  const std::size_t offset = where.offsets[at];
  return TextMatch{offset, where.offsets[at + what.codePoints.size()] - offset};
}

} // namespace tabwright::applescript
