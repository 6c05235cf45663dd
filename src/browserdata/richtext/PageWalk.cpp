// One visit per node, with a context that is copied downwards: what an element sets ends with it. Blocks end the
// paragraph before them and their own; all else adds to the paragraph. Nothing is looked ahead for: whether a block has
// any content is known only when something follows it, so empty ones leave no paragraph.
#include "browserdata/richtext/PageWalk.h"

#include "browserdata/richtext/TableGrid.h"
#include "platform/AsciiCase.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace tabwright::browserdata {
namespace {

std::optional<Direction> directionOf(html::Node element) {
  const auto value = element.attribute("dir");
  if (!value)
    return std::nullopt;
  if (platform::equalIgnoringCase(*value, "rtl"))
    return Direction::rightToLeft;
  if (platform::equalIgnoringCase(*value, "ltr"))
    return Direction::leftToRight;
  if (platform::equalIgnoringCase(*value, "auto"))
    return Direction::automatic;
  return std::nullopt;
}

// By `Direction`: what CSS Writing Modes has such elements begin with, and end with.
constexpr std::u16string_view isolates = u"\u2068\u2066\u2067";
constexpr char16_t isolateEnd = u'\u2069';
constexpr char16_t overrideLeftToRight = u'\u202D';
constexpr char16_t overrideRightToLeft = u'\u202E';
constexpr char16_t overrideEnd = u'\u202C';

// The number that the attribute begins with; what stands behind it doesn't count, as in the HTML standard.
std::optional<int> numberOf(html::Node element, std::string_view attribute) {
  const auto text = element.attribute(attribute);
  int number = 0;
  if (!text || std::from_chars(text->data(), text->data() + text->size(), number).ec != std::errc())
    return std::nullopt;
  return std::clamp(number, -ListTable::maximumNumber, ListTable::maximumNumber);
}

// For lists that count down, which begin with the number of their items.
int countItems(html::Node list) {
  return static_cast<int>(
      std::ranges::count_if(list.children(), [](html::Node child) { return child.name() == "li"; }));
}

} // namespace

struct PageWalk::ListState {
  ListKind kind = ListKind::bullets;
  int level = 0;
  int number = 1; // of the next item
  int step = 1;
  int run = 0;     // the run of numbers that the items so far are in, in the `ListTable`; 0: none yet
  int runNext = 1; // the number that this run counts to next
};

struct PageWalk::Context {
  CharacterFormat character;
  ParagraphFormat paragraph;
  WhiteSpace whiteSpace = WhiteSpace::collapsed;
  std::uint8_t quotations = 0;
  ListState* list = nullptr;              // the innermost around
  int width = ParagraphFormat::bodyWidth; // twips, of the page or the cell
};

void PageWalk::add(html::Node node) {
  visit(node, Context{});
}

void PageWalk::visit(html::Node node, const Context& context) {
  if (node.isText()) {
    body_.paragraph(context.paragraph).addText(node.wholeText(), context.character, context.whiteSpace);
    return;
  }
  const TagEffect& effect = tagEffect(node.name());
  if (isHidden(effect, node))
    return;
  Context inner = context;
  inner.character.add(effect.styles);
  if (effect.keepsWhiteSpace)
    inner.whiteSpace = WhiteSpace::kept;
  switch (effect.role) {
  case TagRole::hidden:
    break;
  case TagRole::lineBreak:
    body_.paragraph(context.paragraph).addLineBreak(context.character);
    break;
  case TagRole::rule:
    body_.addRule(context.paragraph);
    break;
  case TagRole::image:
    body_.paragraph(context.paragraph)
        .addText(node.attribute("alt").value_or(""), context.character, WhiteSpace::collapsed);
    break;
  case TagRole::text:
  case TagRole::link:
  case TagRole::quotation:
  case TagRole::direction:
  case TagRole::isolate:
    visitFlowing(node, effect, inner);
    break;
  case TagRole::block:
  case TagRole::bullets:
  case TagRole::numbers:
  case TagRole::item:
  case TagRole::table:
    visitBlock(node, effect, inner);
    break;
  }
}

void PageWalk::visitChildren(html::Node element, const Context& context) {
  for (const html::Node child : element.children())
    visit(child, context);
}

void PageWalk::visitBlock(html::Node element, const TagEffect& effect, Context context) {
  ParagraphFormat& format = context.paragraph;
  format.direction = directionOf(element).value_or(format.direction);
  if (effect.heading > 0)
    format.heading = effect.heading;
  if (effect.indent != Indent::none)
    format.indentFurther(effect.indent == Indent::both);
  format.isCentred |= effect.isCentred;

  const bool isList = effect.role == TagRole::bullets || effect.role == TagRole::numbers;
  const bool isApart = effect.isSpaced && !(isList && context.list); // lists within lists are not

  body_.endParagraph();
  if (isApart)
    body_.addRoom();
  if (isList)
    visitList(element, effect, context);
  else if (effect.role == TagRole::item)
    visitItem(element, context);
  else if (effect.role == TagRole::table)
    visitTable(element, context);
  else
    visitChildren(element, context);
  body_.endParagraph();
  if (isApart)
    body_.addRoom();
}

void PageWalk::visitFlowing(html::Node element, const TagEffect& effect, Context context) {
  // A `bdo` with a direction overrides that of its characters. Any other element with a direction is isolated from the
  // text around it, and a `bdi` always is, as CSS Writing Modes has it.
  auto direction = directionOf(element);
  const bool isOverride = effect.role == TagRole::direction && direction;
  if (effect.role == TagRole::isolate && !direction)
    direction = Direction::automatic;
  if (isOverride)
    body_.paragraph(context.paragraph)
        .addDirectionOverride(*direction == Direction::rightToLeft ? overrideRightToLeft : overrideLeftToRight,
                              context.character);
  else if (direction)
    body_.paragraph(context.paragraph).addDirectionMark(isolates[static_cast<std::size_t>(*direction)]);

  if (effect.role == TagRole::link)
    visitLink(element, context);
  else if (effect.role == TagRole::quotation)
    visitQuotation(element, context);
  else
    visitChildren(element, context);

  if (isOverride)
    body_.paragraph(context.paragraph).addDirectionOverride(overrideEnd, context.character);
  else if (direction)
    body_.paragraph(context.paragraph).addDirectionMark(isolateEnd);
}

void PageWalk::visitLink(html::Node element, Context context) {
  const auto address = element.attribute("href");
  // An address that no field takes leaves plain text.
  if (const std::uint32_t link = address ? body_.links.add(*address) : 0; link != 0) {
    context.character.link = link;
    context.character.add(CharacterFormat::underlined | CharacterFormat::linkColoured);
  }
  visitChildren(element, context);
}

void PageWalk::visitQuotation(html::Node element, Context context) {
  // Quotation marks alternate by depth.
  const bool isInner = context.quotations++ % 2 == 1;
  const auto add = [&](std::string_view mark) {
    body_.paragraph(context.paragraph).addText(mark, context.character, WhiteSpace::kept);
  };
  add(isInner ? "\u2018" : "\u201C");
  visitChildren(element, context);
  add(isInner ? "\u2019" : "\u201D");
}

void PageWalk::visitList(html::Node element, const TagEffect& effect, Context context) {
  ListState list;
  // Deeper levels than word processors have stay on the last one.
  list.level = context.list ? std::min(context.list->level + 1, ListTable::levels - 1) : 0;
  if (effect.role == TagRole::numbers) {
    list.kind = numberedKind(element.attribute("type").value_or(""));
    list.step = element.attribute("reversed") ? -1 : 1;
    list.number = numberOf(element, "start").value_or(list.step < 0 ? countItems(element) : 1);
  }
  context.list = &list;
  context.paragraph.indentFurther(false);
  visitChildren(element, context);
}

void PageWalk::visitItem(html::Node element, Context context) {
  ListState unlisted; // browsers give an item outside of lists a bullet, too
  ListState& list = context.list ? *context.list : unlisted;
  if (!context.list)
    context.paragraph.indentFurther(false);

  list.number = numberOf(element, "value").value_or(list.number);
  const int number = std::clamp(list.number, 0, ListTable::maximumNumber);
  // Numbers that don't count on by one ("value", "reversed") begin a run of their own.
  if (list.run == 0 || (list.kind != ListKind::bullets && list.runNext != number))
    list.run = lists_.add(list.kind, list.level, number);
  body_.startItem({list.run, list.level, markerText(list.kind, list.number)}, context.paragraph);
  list.runNext = number + 1;
  list.number += list.step;

  visitChildren(element, context);
  body_.endItem();
}

void PageWalk::visitTable(html::Node element, Context context) {
  const auto grid = TableGrid::of(element);
  // Captions, and whatever stands in no row, come above the table.
  for (const html::Node node : grid.before)
    visit(node, context);
  body_.endParagraph();

  const int depth = context.paragraph.tableDepth + 1;
  if (depth > maximumTableDepth) {
    for (const TableRow& row : grid.rows) {
      for (const TableCell& cell : row.cells) {
        if (cell.content)
          visit(*cell.content, context);
        body_.endParagraph();
      }
      for (const html::Node node : row.rest)
        visit(node, context);
    }
    return;
  }

  const ParagraphFormat around = context.paragraph;
  const int left = around.indent * ParagraphFormat::indentStep;
  // The width that is left between the indents around it, so that nested tables stay in their cells.
  const auto edges = grid.edges(left, context.width - left - around.rightIndent * ParagraphFormat::indentStep);
  // A cell begins anew: indents, headings and lists around the table don't reach into it.
  context.paragraph = {};
  context.paragraph.direction = around.direction;
  context.paragraph.tableDepth = static_cast<std::uint8_t>(depth);
  context.list = nullptr;

  body_.startTable(depth);
  for (const TableRow& row : grid.rows) {
    const std::string definition = rowDefinition(row, edges, left, around.direction == Direction::rightToLeft);
    body_.startRow(definition, depth);
    std::size_t column = 0;
    for (const TableCell& cell : row.cells) {
      const int cellLeft = column == 0 ? left : edges.at(column - 1);
      column += static_cast<std::size_t>(cell.columns);
      context.width = edges.at(column - 1) - cellLeft;
      if (cell.content)
        visit(*cell.content, context);
      if (&cell == &row.cells.back()) {
        for (const html::Node node : row.rest)
          visit(node, context);
      }
      body_.endCell(depth);
    }
    body_.endRow(definition, depth);
  }
}

} // namespace tabwright::browserdata
