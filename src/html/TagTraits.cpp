#include "html/TagTraits.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>

/// The table of tags, from the HTML standard's section on parsing. Rows with a name in `KnownTag` come first, in its
/// order.
namespace tabwright::html {

namespace {

struct Row {
  std::string_view name;
  unsigned traits;
};

constexpr unsigned block = isSpecial | closesParagraph | isBlock;
constexpr unsigned heading = isSpecial | closesParagraph | isHeading | leavesForeign;
constexpr unsigned cell = isSpecial | boundsScope | holdsFormatting | isRow;

constexpr auto table = std::to_array<Row>({
    {"a", isFormatting},
    {"button", resumesFormatting | isSpecial | isBlock},
    {"caption", cell},
    {"col", isSpecial | isVoid | isRow},
    {"colgroup", isSpecial | isRow},
    {"dd", isSpecial | closesParagraph | leavesForeign},
    {"div", block | leavesForeign},
    {"dt", isSpecial | closesParagraph | leavesForeign},
    {"address", block},
    {"form", isSpecial | closesParagraph},
    {"li", isSpecial | closesParagraph | leavesForeign},
    {"nobr", isFormatting | leavesForeign},
    {"ol", block | leavesForeign},
    {"optgroup", 0},
    {"option", 0},
    {"p", isSpecial | closesParagraph | leavesForeign},
    {"rb", 0},
    {"rp", 0},
    {"rt", 0},
    {"rtc", 0},
    {"ruby", leavesForeign},
    {"select", resumesFormatting | isSpecial},
    {"table", isSpecial | boundsScope | isRow | leavesForeign},
    {"tbody", isSpecial | isRow},
    {"td", cell},
    {"tfoot", isSpecial | isRow},
    {"th", cell},
    {"thead", isSpecial | isRow},
    {"tr", isSpecial | isRow},
    {"ul", block | leavesForeign},
    {"input", resumesFormatting | isSpecial | isVoid},
    {"keygen", resumesFormatting | isSpecial | isVoid},
    {"textarea", isSpecial},
    {"br", resumesFormatting | isSpecial | isVoid | leavesForeign},
    {"pre", block | leavesForeign},
    // From here on in the order of the alphabet.
    {"applet", resumesFormatting | isSpecial | boundsScope | holdsFormatting | isBlock},
    {"area", resumesFormatting | isSpecial | isVoid},
    {"article", block},
    {"aside", block},
    {"b", isFormatting | leavesForeign},
    {"base", isSpecial | isVoid},
    {"basefont", isSpecial | isVoid},
    {"bgsound", isSpecial | isVoid},
    {"big", isFormatting | leavesForeign},
    {"blockquote", block | leavesForeign},
    {"center", block | leavesForeign},
    {"code", isFormatting | leavesForeign},
    {"details", block},
    {"dir", block},
    {"dl", block | leavesForeign},
    {"em", isFormatting | leavesForeign},
    {"embed", resumesFormatting | isSpecial | isVoid | leavesForeign},
    {"fieldset", block},
    {"figcaption", block},
    {"figure", block},
    {"font", isFormatting},
    {"footer", block},
    {"h1", heading},
    {"h2", heading},
    {"h3", heading},
    {"h4", heading},
    {"h5", heading},
    {"h6", heading},
    {"header", block},
    {"hgroup", block},
    {"hr", isSpecial | isVoid | closesParagraph | leavesForeign},
    {"i", isFormatting | leavesForeign},
    {"image", resumesFormatting | isSpecial | isVoid},
    {"img", resumesFormatting | isSpecial | isVoid | leavesForeign},
    {"link", isSpecial | isVoid},
    {"listing", block | leavesForeign},
    {"main", block},
    {"marquee", resumesFormatting | isSpecial | boundsScope | holdsFormatting | isBlock},
    {"menu", block | leavesForeign},
    {"meta", isSpecial | isVoid | leavesForeign},
    {"nav", block},
    {"noscript", resumesFormatting | isSpecial},
    {"object", resumesFormatting | isSpecial | boundsScope | holdsFormatting | isBlock},
    {"param", isSpecial | isVoid},
    {"s", isFormatting | leavesForeign},
    {"section", block},
    {"small", isFormatting | leavesForeign},
    {"source", isSpecial | isVoid},
    {"span", leavesForeign},
    {"strike", isFormatting | leavesForeign},
    {"strong", isFormatting | leavesForeign},
    {"sub", leavesForeign},
    {"summary", block},
    {"sup", leavesForeign},
    {"track", isSpecial | isVoid},
    {"tt", isFormatting | leavesForeign},
    {"u", isFormatting | leavesForeign},
    {"var", leavesForeign},
    {"wbr", resumesFormatting | isSpecial | isVoid},
});
static_assert(table[tagA].name == "a" && table[tagOptgroup].name == "optgroup" && table[tagTr].name == "tr" &&
              table[tagPre].name == "pre" && table[tagTextarea].name == "textarea");
static_assert(std::ranges::is_sorted(table.begin() + firstUnnamedTag, table.end(), {}, &Row::name));

} // namespace

TagTraits traitsOf(std::string_view name) {
  static const std::unordered_map<std::string_view, TagTraits> byName = [] {
    std::unordered_map<std::string_view, TagTraits> map;
    for (int index = 0; index < static_cast<int>(table.size()); ++index)
      map.emplace(table[static_cast<std::size_t>(index)].name,
                  TagTraits{index, table[static_cast<std::size_t>(index)].traits});
    return map;
  }();
  const auto row = byName.find(name);
  return row == byName.end() ? TagTraits{-1, 0} : row->second;
}

int knownTags() {
  return static_cast<int>(table.size());
}

} // namespace tabwright::html
