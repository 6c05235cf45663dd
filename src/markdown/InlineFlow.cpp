// A walk over the inlines that hands the style down; as deep as the document, which is bounded.
#include "markdown/InlineFlow.h"

#include "markdown/LinkAddress.h"

namespace tabwright::markdown {
namespace {

using Kind = Node::Kind;
using Role = Theme::Role;

class Flow {
public:
  Flow(InlineText& text, const Theme& theme, TerminalColours colours) : text_(text), theme_(theme), colours_(colours) {}

  void children(const Node& node, const TerminalStyle& style) {
    for (const Node& child : node.children)
      write(child, style);
  }

private:
  void write(const Node& node, const TerminalStyle& style) {
    switch (node.kind) {
    case Kind::code:
      mark(Role::code, style);
      text_.append(node.text, style.with(theme_.look(Role::code).terminal));
      mark(Role::code, style);
      break;
    case Kind::html:
      text_.append(node.text, style.with(theme_.look(Role::html).terminal));
      break;
    case Kind::emphasis:
      marked(node, Role::emphasis, style);
      break;
    case Kind::strong:
      marked(node, Role::strong, style);
      break;
    case Kind::strikethrough:
      marked(node, Role::strikethrough, style);
      break;
    case Kind::image:
      marked(node, Role::image, style);
      break;
    case Kind::link:
      link(node, style);
      break;
    case Kind::softBreak:
      text_.append(" ", style);
      break;
    case Kind::hardBreak:
      text_.endLine();
      break;
    default:
      text_.append(node.text, style);
      children(node, style);
    }
  }

  void marked(const Node& node, Role role, const TerminalStyle& style) {
    mark(role, style);
    children(node, style.with(theme_.look(role).terminal));
    mark(role, style);
  }

  void mark(Role role, const TerminalStyle& style) {
    if (colours_ == TerminalColours::off)
      text_.append(theme_.look(role).terminal.plainMark, style);
  }

  void link(const Node& node, const TerminalStyle& style) {
    const std::optional<std::string> address = openableAddress(node.address);
    if (!address) {
      children(node, style);
      return;
    }
    TerminalStyle linked = style.with(theme_.look(Role::link).terminal);
    linked.address = *address;
    children(node, linked);
    if (colours_ == TerminalColours::off && !isItsText(node))
      text_.append(" <" + *address + ">", style);
  }

  // An autolink's text is its address, perhaps without the scheme.
  static bool isItsText(const Node& node) {
    return node.children.size() == 1 && node.children[0].kind == Kind::text && !node.children[0].text.empty() &&
           (node.address == node.children[0].text || node.address == "mailto:" + node.children[0].text ||
            node.address == "http://" + node.children[0].text);
  }

  InlineText& text_;
  const Theme& theme_;
  TerminalColours colours_;
};

} // namespace

void appendInlines(InlineText& text, const Node& block, const Theme& theme, TerminalColours colours,
                   const TerminalStyle& style) {
  Flow(text, theme, colours).children(block, style);
}

InlineText inlineFlow(const Node& block, const Theme& theme, TerminalColours colours, const TerminalStyle& style) {
  InlineText text;
  appendInlines(text, block, theme, colours, style);
  return text;
}

} // namespace tabwright::markdown
