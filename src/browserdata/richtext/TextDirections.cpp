// ICU finds the levels; a run here is what stands on one (ICU's own search for such runs is quadratic). Most text has
// no letter from right to left, and is known without it. Runs stay in logical order: readers of Rich Text Format
// reorder them for themselves, and only have to be told which way each one goes.
#include "browserdata/richtext/TextDirections.h"

#include <unicode/ubidi.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <span>

namespace tabwright::browserdata {
namespace {

constexpr char16_t leftToRightIsolate = 0x2066;

// True when the unit may belong to a letter or mark that runs from right to left. Their blocks are fixed (UAX #9,
// section 3.2); surrogates stand for all planes beyond.
bool mayRunRightToLeft(char16_t unit) {
  return unit >= 0x0590 && (unit < 0x0900 || unit == 0x200F || (unit >= 0x202A && unit <= 0x202E) || unit == 0x2067 ||
                            (unit >= 0xD802 && unit <= 0xD803) || (unit >= 0xD83A && unit <= 0xD83B) ||
                            (unit >= 0xFB1D && unit <= 0xFEFF));
}

bool hasLeftToRightLetter(std::u16string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    UChar32 character = 0;
    U16_NEXT(text.data(), at, text.size(), character);
    if (u_charDirection(character) == U_LEFT_TO_RIGHT)
      return true;
  }
  return false;
}

} // namespace

TextDirections TextDirections::of(std::u16string_view text, Direction direction) {
  if (text.empty())
    return {direction == Direction::rightToLeft, {}};
  if (direction != Direction::rightToLeft && std::ranges::none_of(text, mayRunRightToLeft))
    return {false, {{text.size(), false}}};

  const std::unique_ptr<UBiDi, decltype(&ubidi_close)> algorithm(ubidi_open(), &ubidi_close);
  const auto length = static_cast<std::int32_t>(text.size());
  // Of the whole text, as its lines would find one each.
  const bool isRightToLeft =
      direction == Direction::rightToLeft ||
      (direction == Direction::automatic && ubidi_getBaseDirection(text.data(), length) == UBIDI_RTL);
  UErrorCode error = U_ZERO_ERROR;
  if (algorithm)
    ubidi_setPara(algorithm.get(), text.data(), length, isRightToLeft ? 1 : 0, nullptr, &error);
  const UBiDiLevel* first = algorithm ? ubidi_getLevels(algorithm.get(), &error) : nullptr;
  if (!first || U_FAILURE(error))
    throw std::bad_alloc(); // the only failure that there is for a text and a level like these

  TextDirections result{isRightToLeft, {}};
  const std::span levels(first, text.size());
  for (std::size_t at = 0; at < levels.size();) {
    const UBiDiLevel level = levels[at];
    const auto rest = levels.subspan(at);
    const auto size = static_cast<std::size_t>(
        std::ranges::find_if(rest, [=](UBiDiLevel other) { return other != level; }) - rest.begin());
    // Numbers stand a level above the words around them; so does what a left-to-right isolate holds.
    const bool isIsolated = at > 0 && text[at - 1] == leftToRightIsolate;
    const bool runsRightToLeft =
        level % 2 == 1 || (level > 0 && !isIsolated && !hasLeftToRightLetter(text.substr(at, size)));
    at += size;
    if (!result.runs.empty() && result.runs.back().isRightToLeft == runsRightToLeft)
      result.runs.back().end = at;
    else
      result.runs.push_back({at, runsRightToLeft});
  }
  return result;
}

} // namespace tabwright::browserdata
