#include "browserdata/pagetext/CodeBlock.h"

#include "browserdata/pagetext/ElementRules.h"
#include "browserdata/pagetext/MarkdownEscapes.h"
#include "html/WhiteSpace.h"

#include <algorithm>
#include <string_view>

namespace tabwright::browserdata {

namespace {

void appendLines(std::string& text, const html::Node& node) {
  if (node.isText()) {
    text += node.wholeText();
    return;
  }
  const ElementRule rule = ruleOf(node);
  // A button is there to copy the code.
  if (rule == ElementRule::leftOut || isHidden(node) || node.name() == "button")
    return;
  if (rule == ElementRule::lineBreak) {
    text += '\n';
    return;
  }
  // Some pages make a block of each line.
  const bool isLine = rule == ElementRule::block || rule == ElementRule::item;
  const auto endLine = [&] {
    if (isLine && !text.empty() && !text.ends_with('\n'))
      text += '\n';
  };
  endLine();
  for (const html::Node child : node.children())
    appendLines(text, child);
  endLine();
}

std::string languageOf(const html::Node& element) {
  std::string_view classes = element.attribute("class").value_or("");
  while (!classes.empty()) {
    const auto* const end = std::ranges::find_if(classes, html::isSpace<char>);
    std::string_view name = classes.substr(0, static_cast<std::size_t>(end - classes.begin()));
    classes.remove_prefix(std::min(name.size() + 1, classes.size()));
    for (const std::string_view prefix : {"language-", "lang-", "highlight-source-"})
      if (name.starts_with(prefix) && name.size() > prefix.size() && !name.contains('`'))
        return std::string(name.substr(prefix.size()));
  }
  return {};
}

} // namespace

CodeBlock CodeBlock::of(const html::Node& pre) {
  CodeBlock block{.language = languageOf(pre)};
  for (const html::Node child : pre.children()) {
    appendLines(block.text, child);
    if (block.language.empty() && child.name() == "code")
      block.language = languageOf(child);
  }
  block.text.erase(block.text.find_last_not_of('\n') + 1);
  return block;
}

std::string CodeBlock::fenced() const {
  const std::string fence(std::max<std::size_t>(3, longestRunOfBackticks(text) + 1), '`');
  return fence + language + "\n" + text + "\n" + fence;
}

} // namespace tabwright::browserdata
