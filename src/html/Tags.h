#pragma once

#include <cstdint>
#include <string_view>

namespace tabwright::html {

/// Properties of a tag that the HTML standard's tree construction goes by.
enum TagTrait : std::uint16_t {
  isSpecial = 1U << 0,       ///< the standard's category "special"
  isFormatting = 1U << 1,    ///< is opened again in the next block when it wasn't closed
  isVoid = 1U << 2,          ///< has no content and no end tag
  closesParagraph = 1U << 3, ///< its start tag ends an open `p`
  boundsScope = 1U << 4,     ///< end tags inside don't reach elements outside
  isBlock = 1U << 5,         ///< its end tag closes it and everything in it, if it is in scope
  isRow = 1U << 6,           ///< belongs to a table's structure
  isHeading = 1U << 7,
  leavesForeign = 1U << 8,     ///< its start tag ends a drawing or formula
  resumesFormatting = 1U << 9, ///< special, but formatting is opened again before it, as before all that aren't
  impliesEnd = 1U << 10,       ///< its end tag may be missing before that of an element around it
  inHead = 1U << 11,           ///< belongs to the head of a page
  isUnread = 1U << 12,         ///< its content is no part of the page as it is read
  isUnmarked = 1U << 13,       ///< holds nothing but text
  isForeign = 1U << 14,        ///< an element of a drawing or formula
  isIntegration = 1U << 15,    ///< a foreign element in which HTML stands
};

/// Tags by name; `tag_unknown` stands for all that the standard doesn't name.
enum Tag : std::uint8_t {
#define TAG(name) tag_##name,
#include "html/Tags.def"
#undef TAG
  tag_unknown
};

/// A tag and its traits, looked up once when the tag is read and kept with the token and the element.
struct TagTraits {
  /// Elements that are compared by it must be known; of unknown ones the name tells.
  Tag tag = tag_unknown;
  std::uint16_t traits = 0;
  /// True when it has any of the wanted traits, which are combined as bits.
  [[nodiscard]] bool has(unsigned wanted) const { return (traits & wanted) != 0; }
};

/// By a name in lower case.
/// `tag_unknown` without traits for a name that the standard doesn't give any. In constant time, from any thread.
[[nodiscard]] TagTraits traitsOf(std::string_view name);
/// The name of a tag that the standard names; there is none for `tag_unknown`. It lives as long as the program.
[[nodiscard]] std::string_view nameOf(Tag tag);

} // namespace tabwright::html
