// A row for each trait, as the standard lists elements by what they do. The look-up by name is made of the rows once.
#include "html/Tags.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace tabwright::html {

namespace {

struct Row {
  TagTrait trait;
  std::string_view tags;
};

constexpr auto table = std::to_array<Row>({
    {isSpecial,
     "address applet area article aside base basefont bgsound blockquote body br button caption center col "
     "colgroup dd details dir div dl dt embed fieldset figcaption figure footer form frame frameset h1 h2 h3 "
     "h4 h5 h6 head header hgroup hr html iframe img input keygen li link listing main marquee menu meta nav "
     "noembed noframes noscript object ol p param plaintext pre script search section select source style "
     "summary table tbody td template textarea tfoot th thead title tr track ul wbr xmp"},
    {isFormatting, "a b big code em font i nobr s small strike strong tt u"},
    {isVoid, "area base basefont bgsound br col embed hr img input keygen link meta param source track wbr"},
    {closesParagraph,
     "address article aside blockquote center dd details dialog dir div dl dt fieldset figcaption figure "
     "footer form h1 h2 h3 h4 h5 h6 header hgroup hr li listing main menu nav ol p plaintext pre search "
     "section summary table ul xmp"},
    {boundsScope, "applet caption html marquee object select table td th"},
    {isBlock,
     "address applet article aside blockquote button center details dialog dir div dl fieldset figcaption "
     "figure footer header hgroup listing main marquee menu nav object ol pre search section select summary ul"},
    {isRow, "caption col colgroup table tbody td tfoot th thead tr"},
    {isHeading, "h1 h2 h3 h4 h5 h6"},
    {leavesForeign,
     "b big blockquote body br center code dd div dl dt em embed h1 h2 h3 h4 h5 h6 head hr i img li listing "
     "menu meta nobr ol p pre ruby s small span strike strong sub sup table tt u ul var"},
    {resumesFormatting, "applet area br button embed img input keygen marquee noscript object select wbr"},
    {impliesEnd, "dd dt li optgroup option p rb rp rt rtc"},
    {inHead, "base basefont bgsound link meta noframes script style title"},
    {isUnread, "iframe noembed noframes script style"},
    {isUnmarked, "plaintext textarea title xmp"},
});

constexpr auto names = std::to_array<std::string_view>({
#define TAG(name) #name,
#include "html/Tags.def"
#undef TAG
});

} // namespace

TagTraits traitsOf(std::string_view name) {
  static const std::unordered_map<std::string_view, TagTraits> byName = [] {
    std::unordered_map<std::string_view, TagTraits> map;
    for (std::size_t index = 0; index < names.size(); ++index)
      map.emplace(names[index], TagTraits{static_cast<Tag>(index), 0});
    // `at` throws for a name that isn't among the tags: a slip in the table is seen at the first page.
    for (auto [trait, tags] : table)
      for (std::size_t end = 0; !tags.empty(); tags.remove_prefix(std::min(end + 1, tags.size())))
        map.at(tags.substr(0, end = std::min(tags.find(' '), tags.size()))).traits |= trait;
    return map;
  }();
  const auto row = byName.find(name);
  return row == byName.end() ? TagTraits{} : row->second;
}

std::string_view nameOf(Tag tag) {
  return names[tag];
}

} // namespace tabwright::html
