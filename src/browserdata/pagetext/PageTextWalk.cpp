// One walk, in the page's order. Inline content is collected until a block begins or ends; marks that are open then go
// on in the next block, so a link around whole paragraphs is one link in each. In a heading or a cell, where there is
// room for one line, blocks are lines of it. Lists and tables have files of their own.
#include "browserdata/pagetext/PageTextWalk.h"

#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/pagetext/CodeBlock.h"
#include "browserdata/pagetext/ElementRules.h"
#include "browserdata/pagetext/MainContent.h"
#include "browserdata/pagetext/PageAddress.h"
#include "platform/Whitespace.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tabwright::browserdata {

namespace {

// The beginning of an element's text: enough to know one word.
std::string beginOfText(const html::Node& node, std::size_t length = 8) {
  if (node.isText())
    return std::string(platform::trimmingWhitespaceAndNewlines(node.text().substr(0, length * 4)));
  std::string text;
  for (const html::Node child : node.children()) {
    text += beginOfText(child, length);
    if (text.size() > length)
      break;
  }
  return text;
}

// The small link behind a heading that leads to the heading itself.
bool isAnchorOfHeading(const html::Node& link, std::string_view address, bool isInHeading) {
  if (!address.starts_with('#'))
    return false;
  const std::string text = beginOfText(link);
  return text == "¶" || text == "🔗" || (isInHeading && (text == "#" || text == "§"));
}

} // namespace

std::string PageTextWalk::take() {
  endBlock();
  return blocks_.take();
}

void PageTextWalk::add(const html::Node& node) {
  if (node.isText())
    return addText(node);
  if (isHidden(node) || (skips_ == WalkSkips::boilerplate && isBoilerplate(node)))
    return;
  addElement(node);
}

void PageTextWalk::addChildren(const html::Node& element) {
  for (const html::Node child : element.children())
    add(child);
}

void PageTextWalk::addElement(const html::Node& element) {
  switch (ruleOf(element)) {
  case ElementRule::leftOut:
    return;
  case ElementRule::content:
    return addChildren(element);
  case ElementRule::block:
  case ElementRule::item: // outside of a list
    return addBlockOf(element);
  case ElementRule::heading:
    return addHeading(element);
  case ElementRule::preformatted:
    return addPreformatted(element);
  case ElementRule::list:
    return addList(element);
  case ElementRule::quote:
    return addQuote(element);
  case ElementRule::table:
    return addTable(element);
  case ElementRule::rule:
    return addRule();
  case ElementRule::term:
  case ElementRule::summary:
    endBlock();
    addMarked(element, InlineMark::strong);
    return endBlock();
  case ElementRule::definition:
    return addDefinition(element);
  case ElementRule::lineBreak:
    return addLineBreak();
  case ElementRule::emphasis:
    return addMarked(element, InlineMark::emphasis);
  case ElementRule::strong:
    return addMarked(element, InlineMark::strong);
  case ElementRule::deletion:
    return addMarked(element, InlineMark::deletion);
  case ElementRule::code:
    ++codeDepth_;
    addChildren(element);
    --codeDepth_;
    return;
  case ElementRule::subscript:
    return addBetween(element, "<sub>", "</sub>");
  case ElementRule::superscript:
    return addBetween(element, "<sup>", "</sup>");
  case ElementRule::quotation:
    line_.addText("“");
    addChildren(element);
    return line_.addText("”");
  case ElementRule::link:
    return addLink(element);
  case ElementRule::image:
    return addImage(element);
  case ElementRule::field:
    return addField(element);
  }
}

void PageTextWalk::addText(const html::Node& text) {
  if (codeDepth_ > 0)
    line_.addCode(text.text());
  else
    line_.addText(text.text());
}

void PageTextWalk::addMarked(const html::Node& element, InlineMark mark) {
  // All of a heading is strong already, and code has no marks in it.
  const bool isTaken = codeDepth_ > 0 || (mark == InlineMark::strong && place_ == InlinePlace::heading);
  const bool isMarked = !isTaken && line_.open(mark);
  addChildren(element);
  if (isMarked)
    line_.close(mark);
}

void PageTextWalk::addBetween(const html::Node& element, std::string_view begin, std::string_view end) {
  if (codeDepth_ > 0 || !showsAnything(element))
    return addChildren(element);
  line_.addMarkup(begin);
  addChildren(element);
  line_.addMarkup(end);
}

void PageTextWalk::addLink(const html::Node& link) {
  const std::optional<std::string_view> reference = link.attribute("href");
  if (reference && isAnchorOfHeading(link, *reference, place_ == InlinePlace::heading))
    return;
  std::string address = reference ? absoluteAddress(*reference, base_) : std::string();
  if (address.empty() || leadsNowhere(address))
    return addChildren(link);
  spend(address.size());
  const std::string_view title = platform::trimmingWhitespaceAndNewlines(link.attribute("title").value_or(""));
  if (!line_.open(InlineMark::link, std::move(address), title))
    return addChildren(link);
  // A link that shows nothing is read by its label.
  if (showsAnything(link))
    addChildren(link);
  else
    line_.addText(link.attribute("aria-label").value_or(title));
  line_.close(InlineMark::link);
}

void PageTextWalk::addImage(const html::Node& image) {
  const std::optional<std::string_view> alternative = image.attribute("alt");
  const std::string_view text = platform::trimmingWhitespaceAndNewlines(alternative.value_or(""));
  std::string address = absoluteAddress(image.attribute("src").value_or(""), base_);
  if (address.empty() || leadsNowhere(address))
    return line_.addText(text);
  // One with an empty text is there for its looks, unless it is what a link shows.
  if (alternative && text.empty() && !line_.isInLink())
    return;
  spend(address.size());
  line_.addImage(text, std::move(address),
                 platform::trimmingWhitespaceAndNewlines(image.attribute("title").value_or("")));
}

void PageTextWalk::addField(const html::Node& field) {
  const bool isTask =
      field.attribute("type") == "checkbox" && itemBegin_ == blocks_.size() && !line_.hasContent() && !isInLine();
  if (isTask)
    taskMark_ = field.attribute("checked") ? "[x] " : "[ ] ";
}

void PageTextWalk::addLineBreak() {
  if (codeDepth_ > 0)
    return line_.addCode(" ");
  // Two breaks are what pages divide paragraphs by.
  if (line_.endsInBreak())
    return endBlock();
  line_.addLineBreak();
}

void PageTextWalk::addBlockOf(const html::Node& element) {
  endBlock();
  addChildren(element);
  endBlock();
}

void PageTextWalk::addHeading(const html::Node& heading) {
  if (isInLine())
    return addBlockOf(heading);
  endBlock();
  place_ = InlinePlace::heading;
  addChildren(heading);
  const std::string text = line_.take(place_, form_);
  place_ = InlinePlace::paragraph;
  if (text.empty())
    return;
  const auto level = static_cast<std::size_t>(heading.name()[1] - '0');
  writeBlock(isMarkdown() ? std::string(level, '#') + " " + text : text);
}

void PageTextWalk::addPreformatted(const html::Node& pre) {
  const CodeBlock block = CodeBlock::of(pre);
  endBlock();
  if (platform::isBlank(block.text))
    return;
  if (!isInLine())
    return writeBlock(isMarkdown() ? block.fenced() : block.text);
  for (std::string_view rest = block.text; !rest.empty();) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    line_.addCode(rest.substr(0, end));
    endBlock();
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

void PageTextWalk::addRule() {
  endBlock();
  // Behind the mark of an item a line of dashes would be read together with it.
  if (!isInLine() && isMarkdown())
    writeBlock(itemDepth_ > 0 ? "***" : "---");
}

void PageTextWalk::addQuote(const html::Node& quote) {
  if (isInLine() || !isMarkdown())
    return addBlockOf(quote);
  endBlock();
  blocks_.openQuote();
  addBlockOf(quote);
  blocks_.close();
}

// As an item beneath its term: Markdown has no lists of definitions.
void PageTextWalk::addDefinition(const html::Node& definition) {
  if (isInLine())
    return addBlockOf(definition);
  endBlock();
  if (itemBegin_ != blocks_.size())
    blocks_.joinNext(paragraphEnd_ == blocks_.size());
  const std::size_t outerBegin = std::exchange(itemBegin_, blocks_.size());
  blocks_.openItem(isMarkdown() ? "- " : "  ");
  ++itemDepth_;
  addBlockOf(definition);
  --itemDepth_;
  blocks_.close();
  itemBegin_ = outerBegin;
  blocks_.joinNext(false);
}

void PageTextWalk::endBlock() {
  if (isInLine()) {
    if (line_.hasContent() && !line_.endsInBreak())
      line_.addLineBreak();
    return;
  }
  std::string text = line_.take(place_, form_);
  if (text.empty())
    return;
  writeBlock(std::exchange(taskMark_, {}) + text);
  paragraphEnd_ = blocks_.size();
}

void PageTextWalk::writeBlock(std::string_view lines) {
  const std::size_t before = blocks_.size();
  blocks_.add(lines);
  spend(blocks_.size() - before);
}

void PageTextWalk::spend(std::size_t bytes) {
  if (bytes > room_)
    throw platform::failure(HTMLToMarkdownError::unprocessableHTML);
  room_ -= bytes;
}

} // namespace tabwright::browserdata
