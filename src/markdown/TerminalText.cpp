// Blocks are written line by line. What stands before each line (bars of quotes, markers and indentation of items) is a
// stack that grows and shrinks with the nesting; a blank line between blocks is due until the next line comes.
#include "markdown/TerminalText.h"

#include "markdown/InlineFlow.h"
#include "markdown/TerminalTable.h"
#include "platform/TerminalCells.h"

#include <algorithm>
#include <utility>

namespace tabwright::markdown {
namespace {

using Kind = Node::Kind;
using Role = Theme::Role;

constexpr std::size_t codeIndentation = 4;
constexpr std::size_t narrowestText = 16;

class Writer {
public:
  Writer(const Theme& theme, std::size_t width, TerminalColours colours)
      : theme_(theme), width_(width), least_(std::min(narrowestText, (width + 1) / 2)), colours_(colours) {}

  enum class Spacing : std::uint8_t { loose, tight };

  void blocks(const Node& parent, Spacing spacing, const TerminalStyle& style) {
    bool isFirst = true;
    for (const Node& child : parent.children) {
      if (!isFirst && spacing == Spacing::loose)
        isBlankDue_ = true;
      isFirst = false;
      block(child, spacing, style);
    }
  }

  std::string finished() { return std::move(result_); }

private:
  struct Prefix {
    std::string first; // before the first line, then
    std::string rest;
    std::size_t cells;
    bool isFirst = true;
  };

  void block(const Node& node, Spacing spacing, const TerminalStyle& style) {
    switch (node.kind) {
    case Kind::heading:
      text(inlineFlow(node, theme_, colours_, style.with(theme_.look(Theme::heading(node.level)).terminal)));
      break;
    case Kind::paragraph:
      text(inlineFlow(node, theme_, colours_, style));
      break;
    case Kind::blockQuote: {
      const std::string bar = rendered(theme_.symbols.vertical, Role::border) + " ";
      open({bar, bar, 2});
      blocks(node, Spacing::loose, style.with(theme_.look(Role::quote).terminal));
      close();
      break;
    }
    case Kind::list:
      list(node, style);
      break;
    case Kind::codeBlock:
      open({std::string(codeIndentation, ' '), std::string(codeIndentation, ' '), codeIndentation});
      verbatim(node.text, style.with(theme_.look(Role::codeBlock).terminal));
      close();
      break;
    case Kind::htmlBlock:
      verbatim(node.text, style.with(theme_.look(Role::html).terminal));
      break;
    case Kind::thematicBreak:
      rule();
      break;
    case Kind::table:
      for (const std::string& line : terminalTable(node, theme_, available(), colours_))
        writeLine(line);
      break;
    default: // items and rows are written by what holds them
      blocks(node, spacing, style);
    }
  }

  void list(const Node& node, const TerminalStyle& style) {
    const Spacing spacing = node.isTight ? Spacing::tight : Spacing::loose;
    const std::size_t bullet = std::min(listDepth_++, theme_.symbols.bullets.size() - 1);
    const std::size_t last = static_cast<std::size_t>(node.start) + node.children.size();
    const std::size_t numberCells = std::to_string(last == 0 ? 0 : last - 1).size();
    std::size_t number = static_cast<std::size_t>(node.start);
    for (const Node& child : node.children) {
      std::string marker(theme_.symbols.bullets[bullet]);
      if (node.isOrdered) {
        marker = std::to_string(number++) + ".";
        marker.insert(0, numberCells + 1 - marker.size(), ' ');
      }
      if (child.kind == Kind::taskItem && node.isOrdered)
        marker.append(" ").append(box(child));
      else if (child.kind == Kind::taskItem)
        marker = box(child);
      const std::size_t cells = platform::cellsOf(marker) + 1;
      if (&child != &node.children.front() && spacing == Spacing::loose)
        isBlankDue_ = true;
      open({rendered(marker, Role::listMarker) + " ", std::string(cells, ' '), cells});
      blocks(child, spacing, style);
      close();
    }
    --listDepth_;
  }

  std::string box(const Node& task) const {
    return std::string(task.isChecked ? theme_.symbols.checked : theme_.symbols.unchecked);
  }

  void text(const InlineText& text) {
    for (const InlineText::Range line : text.lines(available(), InlineText::LongWords::whole))
      writeLine(text.rendered(line, colours_));
  }

  // Wrapped like other text, but each line by itself and with the blanks it begins with.
  void verbatim(std::string_view code, const TerminalStyle& style) {
    while (!code.empty()) {
      const std::size_t end = std::min(code.find('\n'), code.size());
      InlineText line;
      line.appendVerbatim(code.substr(0, end), style);
      text(line);
      if (line.empty())
        writeLine("");
      code.remove_prefix(std::min(end + 1, code.size()));
    }
  }

  void rule() {
    std::string line;
    for (std::size_t cell = 0; cell < available(); ++cell)
      line += theme_.symbols.horizontal;
    writeLine(rendered(line, Role::border));
  }

  std::string rendered(std::string_view symbols, Role role) const {
    InlineText text;
    text.appendVerbatim(symbols, TerminalStyle().with(theme_.look(role).terminal));
    return text.rendered({0, symbols.size()}, colours_);
  }

  std::size_t available() const { return width_ - indentation_; }

  void open(Prefix prefix) {
    if (isBlankDue_)
      writeBlankLine();
    if (indentation_ + prefix.cells + least_ > width_)
      prefix = {"", "", 0};
    indentation_ += prefix.cells;
    prefixes_.push_back(std::move(prefix));
  }

  void close() {
    if (prefixes_.back().isFirst) // nothing came: the marker stands alone
      writeLine("");
    indentation_ -= prefixes_.back().cells;
    prefixes_.pop_back();
  }

  void writeLine(std::string_view line) {
    if (isBlankDue_)
      writeBlankLine();
    for (Prefix& prefix : prefixes_)
      result_ += std::exchange(prefix.isFirst, false) ? prefix.first : prefix.rest;
    result_ += line;
    endLine();
  }

  void writeBlankLine() {
    isBlankDue_ = false;
    for (const Prefix& prefix : prefixes_)
      result_ += prefix.rest;
    endLine();
  }

  void endLine() {
    while (result_.ends_with(' '))
      result_.pop_back();
    result_ += '\n';
  }

  const Theme& theme_;
  std::size_t width_;
  std::size_t least_; // cells that indentation leaves
  TerminalColours colours_;
  std::string result_;
  std::vector<Prefix> prefixes_;
  std::size_t indentation_ = 0; // cells of all prefixes
  std::size_t listDepth_ = 0;
  bool isBlankDue_ = false;
};

} // namespace

std::string terminalText(const Document& document, const Theme& theme, std::size_t width, TerminalColours colours) {
  Writer writer(theme, std::max(width, std::size_t{1}), colours);
  writer.blocks(document.root(), Writer::Spacing::loose, {});
  return writer.finished();
}

} // namespace tabwright::markdown
