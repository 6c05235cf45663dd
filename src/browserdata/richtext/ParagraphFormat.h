#pragma once

#include "browserdata/richtext/ListTable.h"
#include "browserdata/richtext/TextDirections.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tabwright::browserdata {

/// A paragraph's place on the page. Indents count in steps, the same for lists, quotes and descriptions.
struct ParagraphFormat {
  static constexpr int indentStep = 480;  ///< twips (1/20 point)
  static constexpr int maximumIndent = 9; ///< steps at each side; what is deeper stays there
  static constexpr int bodyWidth = 9360;  ///< twips between the margins of a page
  static constexpr int room = 160;        ///< twips between paragraphs that are kept apart

  std::uint8_t heading = 0;     ///< 1 to 6; 0: none
  std::uint8_t indent = 0;      ///< steps at the side where lines start
  std::uint8_t rightIndent = 0; ///< steps at the other side
  std::uint8_t tableDepth = 0;  ///< how many tables it stands in
  /// Set when the paragraph is written, by what stands before it. Headings have their own room.
  bool hasRoomAbove = false;
  /// Goes before the direction, which else decides about the side.
  bool isCentred = false;
  /// As the page gives it; the text decides where it gives none.
  Direction direction = Direction::automatic;

  /// Indents further at the start, and with `both` at the end, too.
  /// Beyond the bounds nothing changes.
  void indentFurther(bool both);
};

/// Appends all that stands before the text of a paragraph. `marker` makes it the first paragraph of a list's item.
void appendParagraphStart(std::string& out, const ParagraphFormat& format, const std::optional<ListMarker>& marker,
                          bool isRightToLeft);

} // namespace tabwright::browserdata
