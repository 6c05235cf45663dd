#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tabwright::browserdata {

/// The direction that a page gives a paragraph; `automatic` is that of its first letter that has one.
enum class Direction : std::uint8_t { automatic, leftToRight, rightToLeft };

/// A part of a paragraph in one direction, up to `end`.
struct DirectionRun {
  /// In UTF-16 units of the paragraph's text; a run begins where the one before it ends.
  std::size_t end;
  bool isRightToLeft;
};

/// The directions of a paragraph's text by the Unicode Bidirectional Algorithm (UAX #9).
struct TextDirections {
  bool isRightToLeft; ///< of the paragraph as a whole
  std::vector<DirectionRun> runs;

  /// The runs cover the text in its logical order; an empty text has none. Digits between words from right to left
  /// count to those. Line feeds don't end the paragraph.
  [[nodiscard]] static TextDirections of(std::u16string_view text, Direction direction);
};

} // namespace tabwright::browserdata
