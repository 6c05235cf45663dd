// The one table of tags. It follows the style sheet that the HTML standard suggests to browsers (chapter "Rendering"),
// as far as rich text has a word for it. Tags that only flow are left out.
#include "browserdata/richtext/TagEffects.h"

#include "platform/AsciiCase.h"
#include "platform/Whitespace.h"

#include <algorithm>
#include <array>

namespace tabwright::browserdata {
namespace {

using enum TagRole;
using enum CharacterFormat::Style;

// Sorted by tag.
constexpr std::array effects = std::to_array<TagEffect>({
    {.tag = "a", .role = link},
    {.tag = "address", .role = block, .styles = italic},
    {.tag = "article", .role = block},
    {.tag = "aside", .role = block},
    {.tag = "audio", .role = hidden},
    {.tag = "b", .styles = bold},
    {.tag = "bdi", .role = isolate},
    {.tag = "bdo", .role = direction},
    {.tag = "blockquote", .role = block, .indent = Indent::both, .isSpaced = true},
    {.tag = "body", .role = block},
    {.tag = "br", .role = lineBreak},
    {.tag = "canvas", .role = hidden},
    {.tag = "caption", .role = block, .isCentred = true},
    {.tag = "center", .role = block, .isCentred = true},
    {.tag = "cite", .styles = italic},
    {.tag = "code", .styles = fixedPitch},
    {.tag = "datalist", .role = hidden},
    {.tag = "dd", .role = block, .indent = Indent::start},
    {.tag = "del", .styles = struckOut},
    {.tag = "details", .role = block, .isSpaced = true},
    {.tag = "dfn", .styles = italic},
    {.tag = "dialog", .role = block},
    {.tag = "dir", .role = bullets, .isSpaced = true},
    {.tag = "div", .role = block},
    {.tag = "dl", .role = block, .isSpaced = true},
    {.tag = "dt", .role = block},
    {.tag = "em", .styles = italic},
    {.tag = "fieldset", .role = block},
    {.tag = "figcaption", .role = block},
    {.tag = "figure", .role = block, .indent = Indent::both, .isSpaced = true},
    {.tag = "footer", .role = block},
    {.tag = "form", .role = block},
    {.tag = "h1", .role = block, .heading = 1, .isSpaced = true},
    {.tag = "h2", .role = block, .heading = 2, .isSpaced = true},
    {.tag = "h3", .role = block, .heading = 3, .isSpaced = true},
    {.tag = "h4", .role = block, .heading = 4, .isSpaced = true},
    {.tag = "h5", .role = block, .heading = 5, .isSpaced = true},
    {.tag = "h6", .role = block, .heading = 6, .isSpaced = true},
    {.tag = "head", .role = hidden},
    {.tag = "header", .role = block},
    {.tag = "hgroup", .role = block},
    {.tag = "hr", .role = rule},
    {.tag = "html", .role = block},
    {.tag = "i", .styles = italic},
    {.tag = "iframe", .role = hidden},
    {.tag = "img", .role = image},
    {.tag = "ins", .styles = underlined},
    {.tag = "kbd", .styles = fixedPitch},
    {.tag = "legend", .role = block},
    {.tag = "li", .role = item},
    {.tag = "listing", .role = block, .styles = fixedPitch, .isSpaced = true, .keepsWhiteSpace = true},
    {.tag = "main", .role = block},
    {.tag = "mark", .styles = highlighted},
    {.tag = "menu", .role = bullets, .isSpaced = true},
    {.tag = "meter", .role = hidden},
    {.tag = "nav", .role = block},
    {.tag = "noembed", .role = hidden},
    {.tag = "noframes", .role = hidden},
    {.tag = "noscript", .role = hidden},
    {.tag = "ol", .role = numbers, .isSpaced = true},
    {.tag = "optgroup", .role = block},
    {.tag = "option", .role = block},
    {.tag = "p", .role = block, .isSpaced = true},
    {.tag = "plaintext", .role = block, .styles = fixedPitch, .isSpaced = true, .keepsWhiteSpace = true},
    {.tag = "pre", .role = block, .styles = fixedPitch, .isSpaced = true, .keepsWhiteSpace = true},
    {.tag = "progress", .role = hidden},
    {.tag = "q", .role = quotation},
    {.tag = "s", .styles = struckOut},
    {.tag = "samp", .styles = fixedPitch},
    {.tag = "script", .role = hidden},
    {.tag = "search", .role = block},
    {.tag = "section", .role = block},
    {.tag = "strike", .styles = struckOut},
    {.tag = "strong", .styles = bold},
    {.tag = "style", .role = hidden},
    {.tag = "sub", .styles = lowered},
    {.tag = "summary", .role = block, .styles = bold},
    {.tag = "sup", .styles = raised},
    {.tag = "svg desc", .role = hidden},
    {.tag = "svg metadata", .role = hidden},
    {.tag = "svg title", .role = hidden},
    {.tag = "table", .role = table, .isSpaced = true},
    {.tag = "tbody", .role = block},
    {.tag = "td", .role = block},
    {.tag = "template", .role = hidden},
    {.tag = "textarea", .keepsWhiteSpace = true},
    {.tag = "tfoot", .role = block},
    {.tag = "th", .role = block, .styles = bold, .isCentred = true},
    {.tag = "thead", .role = block},
    {.tag = "title", .role = hidden},
    {.tag = "tr", .role = block},
    {.tag = "tt", .styles = fixedPitch},
    {.tag = "u", .styles = underlined},
    {.tag = "ul", .role = bullets, .isSpaced = true},
    {.tag = "var", .styles = italic},
    {.tag = "video", .role = hidden},
    {.tag = "xmp", .role = block, .styles = fixedPitch, .isSpaced = true, .keepsWhiteSpace = true},
});
// Found by bisection, which a row in the wrong place would break for its neighbours alone.
static_assert(std::ranges::adjacent_find(effects, std::ranges::greater_equal{}, &TagEffect::tag) == effects.end());

constexpr TagEffect flowingText{};

/// True for declarations (CSS Syntax, attribute `style`) with `display: none` among them, the last of its name.
bool isHiddenByStyle(std::string_view declarations) {
  bool isHidden = false;
  while (!declarations.empty()) {
    const std::size_t end = std::min(declarations.find(';'), declarations.size());
    const std::string_view declaration = declarations.substr(0, end);
    declarations.remove_prefix(std::min(end + 1, declarations.size()));
    const std::size_t colon = declaration.find(':');
    if (colon == std::string_view::npos ||
        !platform::equalIgnoringCase(platform::trimmingWhitespaceAndNewlines(declaration.substr(0, colon)), "display"))
      continue;
    std::string_view value = platform::trimmingWhitespaceAndNewlines(declaration.substr(colon + 1));
    value = platform::trimmingWhitespaceAndNewlines(value.substr(0, value.find('!'))); // "!important"
    isHidden = platform::equalIgnoringCase(value, "none");
  }
  return isHidden;
}

} // namespace

const TagEffect& tagEffect(std::string_view tag) {
  const auto* found = std::ranges::lower_bound(effects, tag, {}, &TagEffect::tag);
  return found != effects.end() && found->tag == tag ? *found : flowingText;
}

bool isHidden(const TagEffect& effect, html::Node element) {
  return effect.role == hidden || element.attribute("hidden") ||
         (effect.tag == "dialog" && !element.attribute("open")) ||
         isHiddenByStyle(element.attribute("style").value_or(""));
}

} // namespace tabwright::browserdata
