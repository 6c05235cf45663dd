// Each node becomes one element that carries its look as a style attribute, for the toolkit's rich text has no style
// sheets that go with a text. The recursion is as deep as the document, which is bounded. Text reaches the result
// through `escaped` alone, and addresses through `openableAddress` before, so no markup of the document's gets in.
#include "markdown/RichText.h"

#include "markdown/LinkAddress.h"
#include "platform/TerminalCells.h"

#include <fmt/core.h>

namespace tabwright::markdown {
namespace {

using Kind = Node::Kind;
using Role = Theme::Role;

std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : platform::harmless(text)) {
    switch (character) {
    case '&':
      result += "&amp;";
      break;
    case '<':
      result += "&lt;";
      break;
    case '>':
      result += "&gt;";
      break;
    // The quote too, since the same function serves for attributes.
    case '"':
      result += "&quot;";
      break;
    default:
      result += character;
    }
  }
  return result;
}

class Writer {
public:
  Writer(const Theme& theme, ColourScheme scheme) : theme_(theme), scheme_(scheme) {}

  void children(const Node& node) {
    for (const Node& child : node.children)
      write(child);
  }

  std::string finished() { return std::move(result_); }

private:
  void write(const Node& node) {
    switch (node.kind) {
    case Kind::document:
    case Kind::row: // by `table`
    case Kind::cell:
      children(node);
      break;
    case Kind::heading:
      element(node, fmt::format("h{}", node.level),
              margins(theme_.spacing.headingAbove, theme_.spacing.paragraph) + look(Theme::heading(node.level)));
      break;
    case Kind::paragraph:
      element(node, "p", margins(0, theme_.spacing.paragraph));
      break;
    case Kind::blockQuote:
      element(node, "blockquote",
              margins(0, theme_.spacing.paragraph) +
                  fmt::format("margin-left:{0}px;margin-right:{0}px;", theme_.spacing.quoteIndentation) +
                  look(Role::quote));
      break;
    case Kind::list:
      list(node);
      break;
    case Kind::item:
    case Kind::taskItem:
      item(node, false);
      break;
    case Kind::codeBlock:
      block("pre", margins(0, theme_.spacing.paragraph) + look(Role::codeBlock), node.text);
      break;
    case Kind::htmlBlock:
      block("pre", margins(0, theme_.spacing.paragraph) + look(Role::html), node.text);
      break;
    case Kind::thematicBreak:
      result_ += "<hr>";
      break;
    case Kind::table:
      table(node);
      break;
    case Kind::text:
      result_ += escaped(node.text);
      break;
    case Kind::code:
      block("code", look(Role::code), node.text);
      break;
    case Kind::html:
      block("span", look(Role::html), node.text);
      break;
    case Kind::emphasis:
      element(node, "em", look(Role::emphasis));
      break;
    case Kind::strong:
      element(node, "strong", look(Role::strong));
      break;
    case Kind::strikethrough:
      element(node, "s", look(Role::strikethrough));
      break;
    case Kind::link:
      link(node);
      break;
    case Kind::image:
      element(node, "span", look(Role::image));
      break;
    case Kind::softBreak:
      result_ += '\n';
      break;
    case Kind::hardBreak:
      result_ += "<br>";
      break;
    }
  }

  // With the node's children in it.
  void element(const Node& node, std::string_view tag, const std::string& style) {
    open(tag, style);
    children(node);
    close(tag);
  }

  // With a plain text in it, which may go over several lines.
  void block(std::string_view tag, const std::string& style, std::string_view text) {
    open(tag, style);
    // The line feed that ends every block would be shown as an empty line.
    result_ += escaped(text.ends_with('\n') ? text.substr(0, text.size() - 1) : text);
    close(tag);
  }

  void list(const Node& node) {
    const std::string_view tag = node.isOrdered ? "ol" : "ul";
    const std::string start = node.isOrdered && node.start != 1 ? fmt::format(" start=\"{}\"", node.start) : "";
    open(tag, margins(0, theme_.spacing.paragraph), start);
    for (const Node& child : node.children)
      item(child, node.isTight);
    close(tag);
  }

  // The paragraphs of a tight list stand without spacing: their content belongs to the item itself.
  void item(const Node& node, bool isTight) {
    open("li", "");
    if (node.kind == Kind::taskItem)
      result_.append(node.isChecked ? theme_.symbols.checked : theme_.symbols.unchecked).append(" ");
    bool isFirst = true;
    for (const Node& child : node.children) {
      // The box stands on the line of the first paragraph.
      if (child.kind == Kind::paragraph && (isTight || (isFirst && node.kind == Kind::taskItem))) {
        if (!isFirst)
          result_ += "<br>";
        children(child);
      } else
        write(child);
      isFirst = false;
    }
    close("li");
  }

  void table(const Node& node) {
    open("table", margins(0, theme_.spacing.paragraph) + "border-collapse:collapse;" + colour("border-color", border()),
         fmt::format(" border=\"1\" cellspacing=\"0\" cellpadding=\"{}\"", theme_.spacing.cellPadding));
    for (const Node& row : node.children) {
      result_ += "<tr>";
      for (std::size_t column = 0; column < row.children.size(); ++column) {
        const std::string_view tag = row.isHeader ? "th" : "td";
        open(tag, row.isHeader ? look(Role::tableHeader) : "", alignment(node, column));
        children(row.children[column]);
        close(tag);
      }
      result_ += "</tr>";
    }
    close("table");
  }

  static std::string alignment(const Node& table, std::size_t column) {
    switch (column < table.alignments.size() ? table.alignments[column] : Node::Alignment::none) {
    case Node::Alignment::centre:
      return " align=\"center\"";
    case Node::Alignment::right:
      return " align=\"right\"";
    case Node::Alignment::left:
    case Node::Alignment::none:
      break;
    }
    return " align=\"left\"";
  }

  void link(const Node& node) {
    // A link that may not be opened is shown as its text, which stays readable.
    const std::optional<std::string> address = openableAddress(node.address);
    if (!address) {
      children(node);
      return;
    }
    const std::string title = node.title.empty() ? "" : fmt::format(" title=\"{}\"", escaped(node.title));
    open("a", look(Role::link), fmt::format(" href=\"{}\"{}", escaped(*address), title));
    children(node);
    close("a");
  }

  void open(std::string_view tag, const std::string& style, const std::string& attributes = {}) {
    result_.append("<").append(tag).append(attributes);
    if (!style.empty())
      result_.append(" style=\"").append(style).append("\"");
    result_ += '>';
  }

  void close(std::string_view tag) { result_.append("</").append(tag).append(">"); }

  static std::string margins(int above, int below) {
    return fmt::format("margin-top:{}px;margin-bottom:{}px;", above, below);
  }

  // As declarations of CSS. All that a look doesn't set stays as the place around has it.
  std::string look(Role role) const {
    const Theme::Look& look = theme_.look(role);
    std::string style;
    if (look.size != 100)
      style += fmt::format("font-size:{}%;", look.size);
    if (look.isBold)
      style += "font-weight:bold;";
    if (look.isItalic)
      style += "font-style:italic;";
    if (look.isUnderlined)
      style += "text-decoration:underline;";
    if (look.isStruckThrough)
      style += "text-decoration:line-through;";
    if (look.isFixedPitch)
      style += "font-family:monospace;";
    return style + colour("color", look.colour) + colour("background-color", look.background);
  }

  // Nothing for a look without a colour, so that the place around decides.
  std::string colour(std::string_view property, const std::optional<Theme::ColourPair>& pair) const {
    if (!pair)
      return {};
    const Theme::Colour& colour = scheme_ == ColourScheme::dark ? pair->dark : pair->light;
    return fmt::format("{}:#{:02x}{:02x}{:02x};", property, colour.red, colour.green, colour.blue);
  }

  const std::optional<Theme::ColourPair>& border() const { return theme_.look(Role::border).colour; }

  const Theme& theme_;
  ColourScheme scheme_;
  std::string result_;
};

} // namespace

std::string richText(const Document& document, const Theme& theme, ColourScheme scheme) {
  Writer writer(theme, scheme);
  writer.children(document.root());
  return writer.finished();
}

} // namespace tabwright::markdown
