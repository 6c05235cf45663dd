#include "browserdata/pagetext/ElementRules.h"

#include "html/WhiteSpace.h"
#include "platform/AsciiCase.h"
#include "platform/Whitespace.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tabwright::browserdata {

namespace {

struct RuleRow {
  ElementRule rule;
  std::string_view elements;
};

constexpr auto ruleTable = std::to_array<RuleRow>({
    {ElementRule::leftOut,
     "head script style template noscript svg canvas audio video iframe object embed map area select textarea datalist "
     "progress meter param source track frameset"},
    {ElementRule::block,
     "html body address article aside center details dialog dir div dl fieldset figcaption figure footer form header "
     "hgroup legend main menu nav p search section caption tbody thead tfoot tr td th optgroup option"},
    {ElementRule::heading, "h1 h2 h3 h4 h5 h6"},
    {ElementRule::preformatted, "pre listing"},
    {ElementRule::list, "ul ol"},
    {ElementRule::item, "li"},
    {ElementRule::quote, "blockquote"},
    {ElementRule::table, "table"},
    {ElementRule::rule, "hr"},
    {ElementRule::term, "dt"},
    {ElementRule::definition, "dd"},
    {ElementRule::summary, "summary"},
    {ElementRule::lineBreak, "br"},
    {ElementRule::emphasis, "em i cite dfn var"},
    {ElementRule::strong, "strong b"},
    {ElementRule::deletion, "del s strike"},
    {ElementRule::code, "code kbd samp tt"},
    {ElementRule::subscript, "sub"},
    {ElementRule::superscript, "sup"},
    {ElementRule::quotation, "q"},
    {ElementRule::link, "a"},
    {ElementRule::image, "img"},
    {ElementRule::field, "input"},
});

// A declaration of a style as pages write it, blanks left out and in small letters.
bool hidesByStyle(std::string_view style) {
  std::string tight;
  for (const char c : style)
    if (!html::isSpace(c))
      tight += static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  for (const std::string_view declaration : {"display:none", "visibility:hidden"})
    for (std::size_t at = tight.find(declaration); at != std::string::npos; at = tight.find(declaration, at + 1))
      if (at == 0 || tight[at - 1] == ';')
        return true;
  return false;
}

} // namespace

ElementRule ruleOf(const html::Node& element) {
  static const std::unordered_map<std::string_view, ElementRule> byName = [] {
    std::unordered_map<std::string_view, ElementRule> map;
    for (auto [rule, elements] : ruleTable)
      for (std::size_t end = 0; !elements.empty(); elements.remove_prefix(std::min(end + 1, elements.size())))
        map.emplace(elements.substr(0, end = std::min(elements.find(' '), elements.size())), rule);
    // The source of a formula beside the formula.
    map.emplace("math annotation", ElementRule::leftOut);
    map.emplace("math annotation-xml", ElementRule::leftOut);
    return map;
  }();
  const auto row = byName.find(element.name());
  return row == byName.end() ? ElementRule::content : row->second;
}

bool isHidden(const html::Node& element) {
  bool isOpen = false;
  for (const html::Attribute& attribute : element.attributes()) {
    if (attribute.name == "hidden" || (attribute.name == "style" && hidesByStyle(attribute.value)))
      return true;
    isOpen |= attribute.name == "open";
  }
  return element.name() == "dialog" && !isOpen;
}

bool showsAnything(const html::Node& node) {
  if (node.isText())
    return !platform::isBlank(node.text());
  const ElementRule rule = ruleOf(node);
  if (rule == ElementRule::leftOut || isHidden(node))
    return false;
  if (rule == ElementRule::image || rule == ElementRule::rule)
    return true;
  return std::ranges::any_of(node.children(), showsAnything);
}

} // namespace tabwright::browserdata
