// Trees are compared in a short notation: kind and facts, children in parentheses, texts in quotes.
#include "markdown/Document.h"
#include "markdown/LinkAddress.h"
#include "markdown/MarkdownError.h"
#include "markdown/MarkupLimits.h"
#include "support/Texts.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>

namespace tabwright::markdown {
namespace {

using testsupport::repeated;
using Kind = Node::Kind;

std::string notation(const Node& node);

std::string notation(std::string_view name, const Node& node) {
  std::string children;
  for (const Node& child : node.children)
    children += (children.empty() ? "" : " ") + notation(child);
  return fmt::format("{}({})", name, children);
}

std::string notation(const Node& node) {
  switch (node.kind) {
  case Kind::document:
    return notation("", node);
  case Kind::heading:
    return notation(fmt::format("h{}", node.level), node);
  case Kind::paragraph:
    return notation("p", node);
  case Kind::blockQuote:
    return notation("quote", node);
  case Kind::list:
    return notation(
        fmt::format("{}{}", node.isTight ? "tight" : "loose", node.isOrdered ? std::to_string(node.start) : ""), node);
  case Kind::item:
    return notation("item", node);
  case Kind::taskItem:
    return notation(node.isChecked ? "done" : "open", node);
  case Kind::codeBlock:
    return fmt::format("code:{}'{}'", node.language, node.text);
  case Kind::htmlBlock:
    return fmt::format("html'{}'", node.text);
  case Kind::thematicBreak:
    return "rule";
  case Kind::table: {
    std::string alignments;
    for (const Node::Alignment alignment : node.alignments)
      alignments += "-lcr"[static_cast<std::size_t>(alignment)];
    return notation("table" + alignments, node);
  }
  case Kind::row:
    return notation(node.isHeader ? "header" : "row", node);
  case Kind::cell:
    return notation("cell", node);
  case Kind::text:
    return "'" + node.text + "'";
  case Kind::code:
    return "`" + node.text + "`";
  case Kind::html:
    return "<" + node.text + ">";
  case Kind::emphasis:
    return notation("em", node);
  case Kind::strong:
    return notation("strong", node);
  case Kind::strikethrough:
    return notation("s", node);
  case Kind::link:
    return notation(fmt::format("a:{}:{}", node.address, node.title), node);
  case Kind::image:
    return notation(fmt::format("img:{}:{}", node.address, node.title), node);
  case Kind::softBreak:
    return "~";
  case Kind::hardBreak:
    return "br";
  }
  return "?";
}

std::size_t depthOf(const Node& node) {
  std::size_t deepest = 0;
  for (const Node& child : node.children)
    deepest = std::max(deepest, depthOf(child));
  return deepest + 1;
}

std::string textIn(const Node& node) {
  std::string text = node.text;
  for (const Node& child : node.children)
    text += textIn(child);
  return text;
}

TEST(MarkdownDocument, HasANodeForEachConstruct) {
  const struct {
    std::string_view markdown;
    std::string_view tree;
  } cases[]{
      {"", "()"},
      {"## A *b*", "(h2('A ' em('b')))"},
      {"a\nb  \nc", "(p('a' ~ 'b' br 'c'))"},
      {"> a\n> > b", "(quote(p('a') quote(p('b'))))"},
      {"- a\n- b", "(tight(item(p('a')) item(p('b'))))"},
      {"7. a\n\n8. b", "(loose7(item(p('a')) item(p('b'))))"},
      {"- [ ] a\n- [x] b\n- c", "(tight(open(p('a')) done(p('b')) item(p('c'))))"},
      {"```sh -x\na <b>\n```", "(code:sh'a <b>\n')"},
      {"    a", "(code:'a\n')"},
      {"a\n\n---", "(p('a') rule)"},
      {"|a|b|c|d|\n|-|:-|:-:|-:|\n|1|`2\\|3`|\n",
       "(table-lcr(header(cell('a') cell('b') cell('c') cell('d')) row(cell('1') cell(`2|3`) cell() cell())))"},
      {"**a** ~~b~~ `c`", "(p(strong('a') ' ' s('b') ' ' `c`))"},
      {"[a](b \"c\") ![d](e)", "(p(a:b:c('a') ' ' img:e:('d')))"},
      {"see https://a.b/c and d@e.fg",
       "(p('see ' a:https://a.b/c:('https://a.b/c') ' and ' a:mailto:d@e.fg:('d@e.fg')))"},
      {"<div>\na</div>\n\nb <i>c", "(html'<div>\na</div>\n' p('b ' <<i>> 'c'))"},
      {"a &amp; \\* b", "(p('a & * b'))"},
  };
  for (const auto& [markdown, tree] : cases)
    EXPECT_EQ(notation(parse(markdown).root()), tree) << markdown;
}

TEST(MarkdownDocument, TakesAnyBytes) {
  EXPECT_EQ(notation(parse(std::string_view("a\xFF\0b\x1B", 5)).root()), "(p('a\uFFFD\uFFFDb\x1B'))");
  try {
    static_cast<void>(parse(std::string(longestText + 1, '\n')));
    FAIL() << "taken";
  } catch (const platform::CatalogueFailure<MarkdownError>& failure) {
    EXPECT_EQ(failure.kind(), MarkdownError::textTooLong);
  }
}

TEST(MarkdownDocument, IsNeverDeepAndLosesNoTextByThat) {
  // A hundred thousand of each; the markers that nest no further are text.
  for (const auto& markdown :
       {repeated(">", 100'000) + "word", repeated("- ", 100'000) + "word", repeated("1. ", 100'000) + "word",
        repeated("[", 100'000) + "word", repeated("[", 100'000) + "word" + repeated("](b)", 100'000),
        repeated("*a **a ", 100'000) + "word" + repeated(" a** a*", 100'000), repeated("![", 100'000) + "word"}) {
    const Document document = parse(markdown);
    EXPECT_LE(depthOf(document.root()), deepestNesting + 10) << markdown.substr(0, 10);
    EXPECT_TRUE(textIn(document.root()).contains("word")) << markdown.substr(0, 10);
  }
}

// Each of these took from seconds to hours, or all memory, before it was bounded. No clock here: the test's own limit
// in time tells.
TEST(MarkdownDocument, IsMadeInBoundedTimeOfWhatMakesTheParserSlow) {
  const std::string wideTable = repeated("|a", 20'000) + "|\n" + repeated("|-", 20'000) + "|\n";
  for (const auto& markdown :
       {repeated("+ ", 50'000) + "a\n" + repeated("\n", 100'000),
        repeated(">", 50'000) + "a\n" + repeated("a\n", 100'000), repeated("http://a<", 40'000),
        repeated("![[]()", 40'000), "a " + repeated("<![CDATA[", 40'000), "a\n" + repeated("b | c\n-|-|-\n", 20'000),
        "a\r\n" + repeated("b | c\r\n-|-|-\r\n", 100'000), wideTable + repeated("a\n", 50'000),
        repeated("|a", 100) + "|\n" + repeated("|-", 100) + "|\n" + repeated("a\n", 20'000)})
    EXPECT_FALSE(parse(markdown).root().children.empty()) << markdown.substr(0, 10);
}

TEST(MarkupLimits, LeaveOrdinaryTextAsItIs) {
  const std::string code = "```\n" + repeated("{ \"a\": [1, 2] },\n", 1'000) + "```\n";
  const std::string list = repeated("- an item of a long list\n", 5'000);
  for (const auto& markdown : {code, list, std::string("a\r\nb\r\n\r\n| c |\r\n|---|\r\n")})
    EXPECT_EQ(bounded(markdown), markdown) << markdown.substr(0, 10);
}

TEST(MarkupLimits, LeaveNoMarkInTheDocument) {
  const std::string pipes = repeated("|-", 200);
  EXPECT_EQ(textIn(parse("a\n" + pipes + "|").root()), "a" + pipes + "|");
  const std::string far = std::string(200, ' ') + "- b";
  EXPECT_EQ(textIn(parse("```\n" + far + "\n```").root()), far + "\n");
  EXPECT_EQ(textIn(parse(repeated("é", 50'000)).root()), repeated("é", 50'000));
}

TEST(LinkAddress, OpensTheWebAndMailOnly) {
  EXPECT_EQ(openableAddress("HTTPS://a.b/c?d=e&f#g"), "HTTPS://a.b/c?d=e&f#g");
  EXPECT_EQ(openableAddress("mailto:a@b.c"), "mailto:a@b.c");
  EXPECT_EQ(openableAddress("http://a/\x1B\\\"<é>"), "http://a/%1B%5C%22%3C%C3%A9%3E");
  for (const std::string_view address : {"javascript:alert(1)", "JavaScript:a", "\x01javascript:a", " http://a",
                                         "file:///a", "data:text/html,a", "//a.b", "a/b.md", "", ":", "http"})
    EXPECT_EQ(openableAddress(address), std::nullopt) << address;
}

} // namespace
} // namespace tabwright::markdown
