// Texts of ASCII letters, which nearly all are, are compared byte by byte. Everything else is made into a key first: a
// row of code points, normalised, folded and stripped of what the attributes ignore. Folding is the simple one, code
// point by code point, so that a search can tell lengths in the text itself.
#include "applescript/values/TextComparison.h"

#include "applescript/terminology/FoldedWords.h"

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

constexpr auto sameLetter = [](char a, char b) { return foldedLetter(a) == foldedLetter(b); };

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
  // Composed, letters keep their marks; decomposed, the marks stand alone and can be left out.
  const icu::Normalizer2* normalizer = attributes.considersDiacriticals ? icu::Normalizer2::getNFCInstance(status)
                                                                        : icu::Normalizer2::getNFDInstance(status);
  // Without the normaliser texts are compared as they are written.
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
    // The last zero of a run stays: it is the number.
    if (key[at] == U'0' && !inDigits && digitFollows)
      continue;
    inDigits = isDigit;
    shortened += key[at];
  }
  return shortened;
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
      // SECONDARY tells marks apart but not case.
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
    return !attributes.considersCase && equalFolded(left, right);
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
  // Texts that the collation takes for one, though they aren't equal, have an order all the same.
  return leftKey < rightKey ? -1 : 1;
}

bool textContains(std::string_view text, std::string_view part, const TextAttributes& attributes) {
  if (ignoresOnlyCase(attributes) && isASCII(text) && isASCII(part)) {
    if (attributes.considersCase)
      return text.find(part) != std::string_view::npos;
    return !std::ranges::search(text, part, sameLetter).empty() || part.empty();
  }
  return keyOf(text, attributes).find(keyOf(part, attributes)) != std::u32string::npos;
}

bool textBeginsWith(std::string_view text, std::string_view part, const TextAttributes& attributes) {
  return keyOf(text, attributes).starts_with(keyOf(part, attributes));
}

bool textEndsWith(std::string_view text, std::string_view part, const TextAttributes& attributes) {
  return keyOf(text, attributes).ends_with(keyOf(part, attributes));
}

// Normalised piece by piece: a piece begins where composing can't reach across, and a match begins and ends only where
// the text itself has a place for it, not inside what was composed.
TextSearch::Folded TextSearch::fold(std::string_view text, const TextAttributes& attributes) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
  Folded result;
  const auto add = [&](UChar32 c, std::size_t offset) {
    result.codePoints += static_cast<char32_t>(attributes.considersCase ? c : u_foldCase(c, U_FOLD_CASE_DEFAULT));
    result.offsets.push_back(offset);
  };
  // The first combining character: nothing below it joins with what stands before.
  constexpr UChar32 firstThatComposes = 0x300;
  const auto beginsPiece = [&](UChar32 c) {
    return c < firstThatComposes || U_FAILURE(status) || normalizer->hasBoundaryBefore(c);
  };
  icu::UnicodeString piece;
  std::vector<std::size_t> starts; // of the code points of the piece
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  for (int64_t at = 0; at < size;) {
    piece.remove();
    starts.clear();
    for (int64_t next = at; next < size; at = next) {
      UChar32 c = 0;
      U8_NEXT_OR_FFFD(bytes, next, size, c);
      if (!starts.empty() && beginsPiece(c))
        break;
      starts.push_back(static_cast<std::size_t>(at));
      piece.append(c);
    }
    if (starts.size() == 1 && piece.char32At(0) < firstThatComposes) {
      add(piece.char32At(0), starts.front());
      continue;
    }
    const icu::UnicodeString composed = U_SUCCESS(status) ? normalizer->normalize(piece, status) : piece;
    if (U_SUCCESS(status) && composed != piece) {
      piece = composed;
      // Nothing inside of what was composed is a place of the text.
      starts.resize(1);
    }
    std::size_t index = 0;
    for (int32_t unit = 0; unit < piece.length(); unit = piece.moveIndex32(unit, 1))
      add(piece.char32At(unit), starts[std::min(index++, starts.size() - 1)]);
  }
  result.offsets.push_back(text.size());
  return result;
}

TextSearch::TextSearch(std::string_view text, const TextAttributes& attributes)
    : text_(text), attributes_(attributes), isASCII_(isASCII(text)) {}

std::optional<TextMatch> TextSearch::find(std::string_view part, std::size_t from) {
  if (part.empty() || from > text_.size())
    return {};
  if (isASCII_ && isASCII(part)) {
    const std::string_view tail = text_.substr(from);
    const auto found =
        attributes_.considersCase ? std::ranges::search(tail, part) : std::ranges::search(tail, part, sameLetter);
    if (found.empty())
      return {};
    return TextMatch{from + static_cast<std::size_t>(found.begin() - tail.begin()), part.size()};
  }
  if (!folded_)
    folded_ = fold(text_, attributes_);
  const std::vector<std::size_t>& offsets = folded_->offsets;
  const std::u32string sought = fold(part, attributes_).codePoints;
  // The end counts, too: its offset stands behind those of the code points.
  const auto isPlace = [&](std::size_t index) { return index == 0 || offsets[index] != offsets[index - 1]; };
  // Should `from` lie inside of something composed, the place behind that is the first.
  auto at = static_cast<std::size_t>(std::ranges::lower_bound(offsets, from) - offsets.begin());
  while ((at = folded_->codePoints.find(sought, at)) != std::u32string::npos) {
    if (const std::size_t end = at + sought.size(); isPlace(at) && isPlace(end))
      return TextMatch{offsets[at], offsets[end] - offsets[at]};
    // A match that begins or ends inside of something composed: the next may not.
    ++at;
  }
  return {};
}

} // namespace tabwright::applescript
