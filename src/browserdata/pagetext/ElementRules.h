#pragma once

#include "html/Node.h"

#include <cstdint>

namespace tabwright::browserdata {

/// The part that an element plays when a page is read as text.
enum class ElementRule : std::uint8_t {
  content, ///< leaves no mark: its content stands as it is, within its line
  leftOut, ///< nothing that a reader reads: drawings, players, fields of forms
  block,
  heading,
  preformatted,
  list,
  item,
  quote,
  table,
  rule,
  term,
  definition,
  summary, ///< of something that opens
  lineBreak,
  emphasis,
  strong,
  deletion,
  code,
  subscript,
  superscript,
  quotation, ///< within its line
  link,
  image,
  field ///< an `input`
};

/// By the element's name. `content` for names that HTML doesn't have.
[[nodiscard]] ElementRule ruleOf(const html::Node& element);

/// True for an element that the page itself doesn't show: `hidden`, `display: none` or `visibility: hidden` in its own
/// style, a dialog that isn't open. Style sheets aren't looked at.
[[nodiscard]] bool isHidden(const html::Node& element);

/// True when text, or an image, would be read of the node.
[[nodiscard]] bool showsAnything(const html::Node& node);

} // namespace tabwright::browserdata
