// Two walks from the leaves up: the first counts the prose of the whole page, of each `main` and of each `article`; the
// second, where those don't decide, ends at the innermost element with enough of it. Elements that hold four fifths are
// one in the other, so the first one that is left is the innermost.
#include "browserdata/pagetext/MainContent.h"

#include "browserdata/pagetext/ElementRules.h"
#include "html/WhiteSpace.h"
#include "platform/AsciiCase.h"
#include "platform/Whitespace.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace tabwright::browserdata {

namespace {

constexpr std::size_t leastProse = 140;
constexpr std::size_t shortestBlock = 25;

constexpr std::array<std::string_view, 6> frameRoles{"navigation", "banner",        "contentinfo",
                                                     "search",     "complementary", "menubar"};
// Whole words of classes and ids, in small letters.
constexpr auto frameNames = std::to_array<std::string_view>(
    {"ad",         "ads",         "advert",      "advertisement", "breadcrumb", "breadcrumbs",   "comments",
     "cookie",     "cookies",     "footer",      "masthead",      "menu",       "nav",           "navbar",
     "navigation", "newsletter",  "pagination",  "promo",         "related",    "share",         "sharing",
     "sidebar",    "site-footer", "site-header", "skip-link",     "social",     "sphinxsidebar", "toc-sidebar"});

bool namesFrame(std::string_view words) {
  while (!words.empty()) {
    const auto* const end = std::ranges::find_if(words, html::isSpace<char>);
    const std::string_view word = words.substr(0, static_cast<std::size_t>(end - words.begin()));
    words.remove_prefix(std::min(word.size() + 1, words.size()));
    if (std::ranges::any_of(frameNames, [&](std::string_view name) { return platform::equalIgnoringCase(name, word); }))
      return true;
  }
  return false;
}

bool isMain(const html::Node& element) {
  return element.name() == "main" || element.attribute("role") == "main";
}

// Text that no block has taken yet, and the prose in blocks.
struct Count {
  std::size_t text = 0;
  std::size_t linked = 0;
  std::size_t prose = 0;
};

class ProseWalk {
public:
  /// Ends as soon as an element has `wanted` bytes of prose.
  explicit ProseWalk(std::size_t wanted) : wanted_(wanted) {}

  struct Candidate {
    std::optional<html::Node> element;
    std::size_t prose = 0;
    int count = 0;

    void add(const html::Node& node, std::size_t itsProse) {
      element = node;
      prose = itsProse;
      ++count;
    }
  };
  Candidate main;
  Candidate article;
  std::optional<html::Node> innermost;

  Count count(const html::Node& node, bool isLinked) {
    if (node.isText()) {
      const std::size_t length = platform::trimmingWhitespaceAndNewlines(node.text()).size();
      return {.text = length, .linked = isLinked ? length : 0};
    }
    const ElementRule rule = ruleOf(node);
    if (rule == ElementRule::leftOut || isHidden(node) || isBoilerplate(node))
      return {};
    Count all;
    for (const html::Node child : node.children()) {
      const Count one = count(child, isLinked || rule == ElementRule::link);
      all.text += one.text;
      all.linked += one.linked;
      all.prose += one.prose;
      if (innermost)
        return all;
    }
    const bool isInLine =
        rule == ElementRule::content || (rule >= ElementRule::lineBreak && rule <= ElementRule::field);
    if (isInLine)
      return all;
    const bool isProse = rule == ElementRule::preformatted || (all.text >= shortestBlock && all.linked * 2 <= all.text);
    Count block{.prose = all.prose + (isProse ? all.text : 0)};
    if (isMain(node))
      main.add(node, block.prose);
    else if (node.name() == "article")
      article.add(node, block.prose);
    const bool mayBeMain = rule == ElementRule::block || rule == ElementRule::quote;
    if (mayBeMain && node.name() != "p" && block.prose >= wanted_)
      innermost = node;
    return block;
  }

private:
  std::size_t wanted_;
};

} // namespace

bool isBoilerplate(const html::Node& element) {
  if (element.isText())
    return false;
  const std::string_view name = element.name();
  if (name == "nav" || name == "aside" || name == "footer")
    return true;
  if (name == "html" || name == "body" || name == "main" || name == "article")
    return false;
  if (const auto role = element.attribute("role"); role && std::ranges::find(frameRoles, *role) != frameRoles.end())
    return true;
  return namesFrame(element.attribute("class").value_or("")) || namesFrame(element.attribute("id").value_or(""));
}

std::optional<html::Node> mainContent(const html::Node& root) {
  ProseWalk walk(static_cast<std::size_t>(-1));
  const std::size_t all = walk.count(root, false).prose;
  if (all < leastProse)
    return std::nullopt;
  if (walk.main.count == 1 && walk.main.prose * 4 >= all)
    return walk.main.element;
  if (walk.article.count == 1 && walk.article.prose * 2 >= all)
    return walk.article.element;
  ProseWalk innermost(all - all / 5);
  static_cast<void>(innermost.count(root, false));
  return innermost.innermost;
}

} // namespace tabwright::browserdata
