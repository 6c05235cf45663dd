#pragma once

#include "browserdata/richtext/CharacterFormat.h"
#include "html/Node.h"

#include <cstdint>
#include <string_view>

namespace tabwright::browserdata {

/// The part that an element plays in rich text.
enum class TagRole : std::uint8_t {
  text, ///< flows with the text around it
  block,
  hidden, ///< browsers show none of it
  lineBreak,
  rule,
  image,
  link,
  quotation,
  direction, ///< overrides the order of its characters
  isolate,   ///< keeps its direction apart from the text around it
  bullets,
  numbers,
  item,
  table,
};

/// The sides at which a block's text is indented further.
enum class Indent : std::uint8_t { none, start, both };

/// The effect of one tag.
struct TagEffect {
  /// In lower case; empty for the effect of unknown tags.
  std::string_view tag;
  TagRole role = TagRole::text;
  /// Of `CharacterFormat::Style`, added to those around the element.
  std::uint16_t styles = CharacterFormat::plain;
  std::uint8_t heading = 0; ///< 1 to 6
  Indent indent = Indent::none;
  bool isSpaced = false; ///< a block with room above and below
  bool isCentred = false;
  /// White space counts as in `pre`.
  bool keepsWhiteSpace = false;
};

/// The effect of an element: text that flows for tags that nobody knows, as in browsers.
/// The effect is of the table, so it lives as long as the program. `tag` is in lower case.
[[nodiscard]] const TagEffect& tagEffect(std::string_view tag);

/// True when a browser shows nothing of an element: for its tag, or as its attributes say.
[[nodiscard]] bool isHidden(const TagEffect& effect, html::Node element);

} // namespace tabwright::browserdata
