#pragma once

#include <string_view>

namespace tabwright::html {

/// What the tree construction of the HTML standard does with a tag, as far as it counts for what is open.
enum TagTrait : unsigned {
  isSpecial = 1U << 0,       ///< the standard's category "special"
  isFormatting = 1U << 1,    ///< is opened again in the next block when it wasn't closed
  isVoid = 1U << 2,          ///< has no content and no end tag
  closesParagraph = 1U << 3, ///< its start tag ends an open `p`
  boundsScope = 1U << 4,     ///< end tags inside don't reach elements outside
  holdsFormatting = 1U << 5, ///< formatting inside doesn't reach outside, nor the other way round
  isBlock = 1U << 6,         ///< its end tag closes it and everything in it, if it is in scope
  isRow = 1U << 7,           ///< belongs to a table's structure
  isHeading = 1U << 8,
  leavesForeign = 1U << 9,      ///< its start tag ends a drawing or formula
  resumesFormatting = 1U << 10, ///< special, but formatting is opened again before it, as before all that aren't
};

struct TagTraits {
  int id = 0; ///< tells tags apart; below `knownTags` for those of the table
  unsigned traits = 0;
  [[nodiscard]] bool has(unsigned wanted) const { return (traits & wanted) != 0; }
};

/// The ids of tags that the account of open elements treats by name: their rows in the table.
enum KnownTag : int {
  tagA,
  tagButton,
  tagCaption,
  tagCol,
  tagColgroup,
  tagDd,
  tagDiv,
  tagDt,
  tagAddress,
  tagForm,
  tagLi,
  tagNobr,
  tagOl,
  tagOptgroup,
  tagOption,
  tagP,
  tagRb,
  tagRp,
  tagRt,
  tagRtc,
  tagRuby,
  tagSelect,
  tagTable,
  tagTbody,
  tagTd,
  tagTfoot,
  tagTh,
  tagThead,
  tagTr,
  tagUl,
  tagInput,
  tagKeygen,
  tagTextarea,
  tagBr,
  tagPre,
  firstUnnamedTag
};

/// The traits of a tag by its name in lower case. Tags that the table doesn't hold have no traits and the id -1.
[[nodiscard]] TagTraits traitsOf(std::string_view name);

/// How many tags the table holds.
[[nodiscard]] int knownTags();

} // namespace tabwright::html
