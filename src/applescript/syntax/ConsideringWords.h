#pragma once

#include "applescript/lexer/Keyword.h"
#include "applescript/syntax/Tree.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tabwright::applescript {

/// The words of an attribute of `considering` and `ignoring`: one, or two. The parser reads attributes by their
/// keywords, the printer writes them by `words`.
struct ConsideringRow {
  Considering::Attribute attribute;
  std::string_view words;
  Keyword first;
  /// Keyword::none for an attribute of one word.
  Keyword second = Keyword::none;
};

/// A row for each attribute.
inline constexpr auto consideringTable = std::to_array<ConsideringRow>({
    {Considering::Attribute::textCase, "case", Keyword::textCase},
    {Considering::Attribute::diacriticals, "diacriticals", Keyword::diacriticals},
    {Considering::Attribute::expansion, "expansion", Keyword::expansion},
    {Considering::Attribute::hyphens, "hyphens", Keyword::hyphens},
    {Considering::Attribute::punctuation, "punctuation", Keyword::punctuation},
    {Considering::Attribute::whiteSpace, "white space", Keyword::white, Keyword::space},
    {Considering::Attribute::numericStrings, "numeric strings", Keyword::numeric, Keyword::strings},
    {Considering::Attribute::applicationResponses, "application responses", Keyword::application, Keyword::responses},
});

/// The attribute as it is written.
[[nodiscard]] constexpr std::string_view consideringWords(Considering::Attribute attribute) {
  return std::ranges::find(consideringTable, attribute, &ConsideringRow::attribute)->words;
}

} // namespace tabwright::applescript
