// A table gives each tag its rule; the rules follow in the table's order, but for that of tables, which has a file of
// its own. Tags that the table doesn't hold leave no mark: their content stands as it is. Rules write the separators
// that they need without looking at what is there: gaps that are too wide go in the end.
#include "browserdata/markdown/MarkdownWalk.h"

#include "platform/Whitespace.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace tabwright::browserdata {

enum class MarkdownWalk::Rule : unsigned char {
  content,
  heading,
  block,
  lineBreak,
  definitions,
  term,
  definition,
  summary,
  emphasis,
  strike,
  strong,
  variable,
  code,
  rule,
  list,
  item,
  table,
  image,
  caption,
  link,
  abbreviation,
  quote,
  aside
};

MarkdownWalk::Rule MarkdownWalk::ruleOf(std::string_view tag) {
  using enum Rule;
  static const std::unordered_map<std::string_view, Rule> rules = {
      {"h1", heading},      {"h2", heading},        {"h3", heading},       {"h4", heading},
      {"h5", heading},      {"h6", heading},        {"div", block},        {"p", block},
      {"br", lineBreak},    {"dl", definitions},    {"dt", term},          {"dd", definition},
      {"summary", summary}, {"cite", emphasis},     {"dfn", emphasis},     {"em", emphasis},
      {"i", emphasis},      {"q", emphasis},        {"del", strike},       {"s", strike},
      {"strike", strike},   {"b", strong},          {"strong", strong},    {"var", variable},
      {"code", code},       {"hr", rule},           {"ol", list},          {"ul", list},
      {"li", item},         {"table", table},       {"img", image},        {"figcaption", caption},
      {"a", link},          {"abbr", abbreviation}, {"blockquote", quote}, {"aside", aside},
  };
  const auto row = rules.find(tag);
  return row == rules.end() ? content : row->second;
}

MarkdownPlace MarkdownPlace::inside(const html::Node& element) const {
  MarkdownPlace place = *this;
  place.parent = element.name();
  place.isInLink = isInLink || element.name() == "a";
  place.isInPreformatted = isInPreformatted || element.name() == "pre";
  return place;
}

void MarkdownWalk::add(const html::Node& node, const MarkdownPlace& place) {
  if (node.isText()) {
    pieces_.add({}); // where something stands before it, this piece counts: quotes mark every piece
    pieces_.add(node.text());
    return;
  }
  switch (ruleOf(node.name())) {
  case Rule::content:
    addContent(node, place);
    return;
  case Rule::heading:
    return addHeading(node, place);
  case Rule::block:
    pieces_.add({});
    addContent(node, place);
    return pieces_.add(paragraph_);
  case Rule::lineBreak:
    return pieces_.add(place.isInLink ? "<br>" : "  " + std::string(line_));
  case Rule::definitions:
    addContent(node, place);
    return pieces_.add(paragraph_);
  case Rule::term:
    pieces_.add("**");
    addContent(node, place);
    return pieces_.add(":**");
  case Rule::definition:
    addContent(node, place);
    return pieces_.add(line_);
  case Rule::summary:
    pieces_.add(line_);
    pieces_.add("**");
    addContent(node, place);
    // The two blanks end the line behind the summary.
    pieces_.add("**  ");
    return pieces_.add(line_);
  case Rule::emphasis:
    return addBetween(node, place, "_");
  case Rule::strike:
    return addBetween(node, place, "~~");
  case Rule::strong:
    return addBetween(node, place, "**");
  case Rule::variable:
    return addBetween(node, place, "***");
  case Rule::code:
    return addCode(node, place);
  case Rule::rule:
    pieces_.add(paragraph_);
    pieces_.add("---");
    return pieces_.add(paragraph_);
  case Rule::list:
    addList(node, place);
    return pieces_.add(line_);
  case Rule::item:
    addItem(node, place, false);
    return;
  case Rule::table:
    return addTable(node, place);
  case Rule::image:
    return addImage(node, place);
  case Rule::caption:
    pieces_.add(line_);
    addBetween(node, place, "_");
    return pieces_.add(paragraph_);
  case Rule::link:
    return addLink(node, place);
  case Rule::abbreviation:
    return addAbbreviation(node, place);
  case Rule::quote:
    return addQuote(node, place);
  case Rule::aside:
    return addAside(node, place);
  }
}

std::size_t MarkdownWalk::addContent(const html::Node& element, const MarkdownPlace& place) {
  const MarkdownPlace inside = place.inside(element);
  return pieces_.addTrimmed([&] {
    for (const html::Node child : element.children())
      add(child, inside);
  });
}

void MarkdownWalk::addBetween(const html::Node& element, const MarkdownPlace& place, std::string_view mark) {
  pieces_.add(mark);
  addContent(element, place);
  pieces_.add(mark);
}

void MarkdownWalk::addHeading(const html::Node& heading, const MarkdownPlace& place) {
  pieces_.add(paragraph_);
  pieces_.add({});
  pieces_.add(std::string(static_cast<std::size_t>(heading.name()[1] - '0'), '#') + " ");
  addContent(heading, place);
  pieces_.add(paragraph_);
}

void MarkdownWalk::addCode(const html::Node& code, const MarkdownPlace& place) {
  // Code within `pre` is a block with fences, any other is within its line.
  if (!place.isInPreformatted)
    return addBetween(code, place, "`");
  pieces_.add("```");
  pieces_.add(line_);
  addContent(code, place);
  pieces_.add(line_);
  pieces_.add("```");
  pieces_.add(paragraph_);
}

// Only items count in a list; text between them goes.
void MarkdownWalk::addList(const html::Node& list, const MarkdownPlace& place) {
  pieces_.add(line_);
  const MarkdownPlace inside = place.inside(list);
  pieces_.addTrimmed([&] {
    bool isUnderItem = false;
    for (const html::Node child : list.children())
      if (child.name() == "li")
        isUnderItem = addItem(child, inside, isUnderItem);
  });
}

// A block that follows a blank line stands at the line's start, as does a quote, so it ends all lists around it. A
// marker that were indented behind it would read as code: the lists go on as if their level were the outermost.
std::size_t MarkdownWalk::tabsBeforeMarker(int level) {
  bool isBehindBlock = false;
  if (level > 0) {
    // Each piece is looked at once, since the marker moves on.
    const std::string text = pieces_.joined(std::min(behindMarker_, pieces_.size()));
    const std::string_view shown = platform::trimmingWhitespaceAndNewlines(text);
    isBehindBlock = shown.find(paragraph_) != std::string_view::npos ||
                    shown.find(std::string(line_) + "> ") != std::string_view::npos;
  }
  levelsEnded_ = isBehindBlock ? level : std::min(levelsEnded_, level);
  return static_cast<std::size_t>(level - levelsEnded_);
}

// An item that begins with a list has no marker, and its list goes under the item before it, if there is one
// (`isUnderItem`). Returns that for the item after this.
bool MarkdownWalk::addItem(const html::Node& item, const MarkdownPlace& place, bool isUnderItem) {
  const auto isList = [](const html::Node& node) { return node.name() == "ol" || node.name() == "ul"; };
  const bool hasMarker = item.children().empty() || !isList(item.children().front());
  // Every number is 1, as Markdown counts for itself.
  if (hasMarker) {
    pieces_.add(std::string(tabsBeforeMarker(place.level), '\t') + (place.parent == "ol" ? "1. " : "- "));
    behindMarker_ = pieces_.size();
  }
  MarkdownPlace inside = place.inside(item);
  inside.level += hasMarker || isUnderItem ? 1 : 0;
  bool hasList = false;
  for (const html::Node child : item.children()) {
    if (isList(child)) {
      addList(child, inside);
      hasList = true;
    } else {
      add(child, inside);
    }
  }
  if (!hasList)
    pieces_.add(line_);
  return hasMarker || isUnderItem;
}

void MarkdownWalk::addImage(const html::Node& image, const MarkdownPlace& place) {
  const auto valueOf = [&](std::string_view name) { return std::string(image.attribute(name).value_or("")); };
  std::string piece = "![" + valueOf("alt") + "](" + valueOf("src");
  if (const std::string title = valueOf("title"); !platform::isBlank(title))
    piece += " \"" + title + "\"";
  pieces_.add(piece + ")");
  // An image by itself is a block; in a link it stays in the link's line.
  if (!place.isInLink)
    pieces_.add(paragraph_);
}

// A link whose address was taken out keeps its text and leads nowhere.
void MarkdownWalk::addLink(const html::Node& link, const MarkdownPlace& place) {
  pieces_.add("[");
  // The gaps around a block in a link would stand within its brackets.
  pieces_.trim(addContent(link, place));
  pieces_.add("](" + std::string(link.attribute("href").value_or("")) + ")");
}

void MarkdownWalk::addAbbreviation(const html::Node& abbreviation, const MarkdownPlace& place) {
  addContent(abbreviation, place);
  if (const auto title = abbreviation.attribute("title"); title && !platform::isBlank(*title))
    pieces_.add(" (" + std::string(*title) + ")");
}

void MarkdownWalk::addQuote(const html::Node& quote, const MarkdownPlace& place) {
  MarkdownPlace outermost = place;
  outermost.level = 0; // lists begin anew behind the mark
  pieces_.add(line_);
  pieces_.quote(addContent(quote, outermost));
  pieces_.add(paragraph_);
}

void MarkdownWalk::addAside(const html::Node& aside, const MarkdownPlace& place) {
  MarkdownPlace outermost = place;
  outermost.level = 0;
  const std::string text = pieces_.take(addContent(aside, outermost));
  pieces_.add(line_);
  pieces_.add("> [! Aside]");
  pieces_.add(line_);
  // A line is what the regular expression (.+?(\n|$)) matches, the dot standing for line ends, too: it has at least one
  // character before its end, so that an empty line belongs to the one behind it.
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin + 1), text.size() - 1) + 1;
    pieces_.add("> " + text.substr(begin, end - begin));
    begin = end;
  }
  pieces_.add(paragraph_);
}

} // namespace tabwright::browserdata
