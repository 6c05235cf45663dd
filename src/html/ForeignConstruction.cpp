// Drawings (SVG) and formulas (MathML). Their elements are named "svg", "svg path", "math mi", so that none is taken
// for HTML's element of that name. HTML may stand in some of them ("integration points"): there the rules of the body
// hold again, so the innermost open element alone tells which rules a token falls under.
#include "html/TreeConstruction.h"
#include "platform/AsciiCase.h"

#include <algorithm>
#include <array>

namespace tabwright::html {

namespace {

std::string_view localName(const Element& element) {
  const std::string_view name = element.name();
  return name.substr(name.find(' ') + 1);
}

// The part that an element plays for the HTML in it.
std::uint16_t foreignTraits(std::string_view name, std::span<const Attribute> attributes) {
  constexpr auto always = std::to_array<std::string_view>(
      {"svg foreignobject", "svg desc", "svg title", "math mi", "math mo", "math mn", "math ms", "math mtext"});
  if (std::ranges::find(always, name) != always.end())
    return isForeign | isSpecial | boundsScope | isIntegration;
  if (name != "math annotation-xml")
    return isForeign;
  const auto encoding = std::ranges::find(attributes, "encoding", &Attribute::name);
  const bool isHtml =
      encoding != attributes.end() && (platform::equalIgnoringCase(encoding->value, "text/html") ||
                                       platform::equalIgnoringCase(encoding->value, "application/xhtml+xml"));
  return static_cast<std::uint16_t>(isForeign | isSpecial | boundsScope | (isHtml ? isIntegration : 0));
}

} // namespace

bool TreeConstruction::belongsToForeign(const Token& token) const {
  const Element& element = current();
  if (!element.has(isForeign))
    return false;
  if (token.kind == Token::Kind::endTag)
    return true;
  if (element.has(isIntegration)) // these two belong to the texts of formulas
    return element.name().starts_with("math m") && (token.name == "mglyph" || token.name == "malignmark");
  return token.kind != Token::Kind::startTag || element.name() != "math annotation-xml" || token.name != "svg";
}

// To the HTML around it.
void TreeConstruction::leaveForeign() {
  while (current().has(isForeign) && !current().has(isIntegration))
    pop();
}

void TreeConstruction::takeForeign(const Token& token) {
  const Tag tag = token.traits.tag;
  if (token.kind == Token::Kind::text || token.kind == Token::Kind::characterData) {
    // Rules and code of a drawing are no text of the page.
    const bool isCode = localName(current()) == "style" || localName(current()) == "script";
    const auto place = token.kind == Token::Kind::text ? TextPlace::foreign : TextPlace::raw;
    return isCode ? void() : insertText(readText(token.text, place, room_));
  }
  if (token.kind == Token::Kind::startTag) {
    const auto isOfFont = [](const Attribute& attribute) {
      return attribute.name == "color" || attribute.name == "face" || attribute.name == "size";
    };
    // HTML in a drawing that was never closed: the standard ends the drawing there.
    if (token.traits.has(leavesForeign) || (tag == tag_font && std::ranges::any_of(token.attributes, isOfFont))) {
      leaveForeign();
      return start(token);
    }
    const std::string_view outer = current().name();
    const std::string name = std::string(outer.substr(0, outer.find(' '))) + ' ' + token.name;
    insertElement(texts_.copy(name), {tag_unknown, foreignTraits(name, token.attributes)}, token.attributes);
    if (token.isSelfClosing)
      pop();
    return;
  }
  // The two end tags that make elements of their own, which are HTML's.
  if (tag == tag_br || tag == tag_p) {
    leaveForeign();
    return end(token);
  }
  // The root is no foreign element, so the walk ends.
  for (std::size_t position = stack_.size(); stack_[--position]->has(isForeign);)
    if (localName(*stack_[position]) == token.name)
      return closeThrough(position);
  end(token);
}

} // namespace tabwright::html
