#include "markdown/TerminalText.h"
#include "platform/TerminalCells.h"
#include "support/SourceFolder.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <regex>
#include <string>

namespace tabwright::markdown {
namespace {

using testsupport::linesOf;

std::string plain(std::string_view markdown, std::size_t width) {
  return terminalText(parse(markdown), markdownTheme, width, TerminalColours::off);
}

std::string coloured(std::string_view markdown, std::size_t width) {
  return terminalText(parse(markdown), markdownTheme, width, TerminalColours::on);
}

std::string withoutEscapes(const std::string& text) {
  return std::regex_replace(text, std::regex("\x1B(\\[[0-9;]*m|\\]8;;[^\x1B]*\x1B\\\\)"), "");
}

// In one order, since the cells of a table's row are mixed.
std::string lettersOf(std::string text) {
  std::erase_if(text, [](unsigned char c) { return std::isalpha(c) == 0; });
  std::ranges::sort(text);
  return text;
}

std::string textIn(const Node& node) {
  std::string text = node.text;
  for (const Node& child : node.children)
    text += textIn(child);
  return text;
}

TEST(MarkdownOnATerminal, IsLaidOutInLines) {
  const struct {
    std::string_view markdown;
    std::string_view lines;
  } cases[]{
      {"", ""},
      {"# A\ntwo *words* and **three** more", "A\n\ntwo *words* and\n**three** more\n"},
      {"a  \nb\nc", "a\nb c\n"},
      {"> one two three four\n>\n> five", "│ one two three\n│ four\n│\n│ five\n"},
      {"- one two three four\n  - five\n- six", "• one two three\n  four\n  ◦ five\n• six\n"},
      {"- a\n\n  b\n\n- c", "• a\n\n  b\n\n• c\n"},
      {"9. a\n10. b", " 9. a\n10. b\n"},
      {"- [ ] a\n- [x] b", "☐ a\n☑ b\n"},
      {"-\n- a", "•\n• a\n"},
      {"```\nif x:\n\n\ty\n```", "    if x:\n\n        y\n"},
      {"---", "────────────────\n"},
      {"`a b` ~~c~~", "`a b` ~~c~~\n"},
      {"[a b](https://c.d) <https://e.f>", "a b\n<https://c.d>\nhttps://e.f\n"},
      {"d@e.fg [x](javascript:y) ![z](w)", "d@e.fg x z\n"},
      {"--option-with-a-long-name a", "--option-with-a-long-name\na\n"}, // stays whole
      {"日本語の文章は、どこでも", "日本語の文章は、\nどこでも\n"},
      {"日本語の文章はと、ここ", "日本語の文章は\nと、ここ\n"}, // no line begins with a comma
      {"<b>a</b>\n", "<b>a</b>\n"},
  };
  for (const auto& [markdown, lines] : cases)
    EXPECT_EQ(plain(markdown, 16), lines) << markdown;
}

TEST(MarkdownOnATerminal, FitsTablesIntoTheWidth) {
  const std::string_view table = "|n|number|words|\n|-|-:|:-:|\n|a|1|one two three|\n|日本|22|four|";
  EXPECT_EQ(plain(table, 40), "n    │ number │     words\n"
                              "─────┼────────┼──────────────\n"
                              "a    │      1 │ one two three\n"
                              "日本 │     22 │     four\n");
  EXPECT_EQ(plain(table, 24), "n    │ number │  words\n"
                              "─────┼────────┼─────────\n"
                              "a    │      1 │ one two\n"
                              "     │        │  three\n"
                              "日本 │     22 │   four\n");
  EXPECT_EQ(plain("|a|b|\n|-|-|\n|1|unbreakable|", 12), "a │ b\n──┼─────────\n1 │ unbreaka\n  │ ble\n");
  EXPECT_EQ(plain(table, 14), "n: a\nnumber: 1\nwords: one two\nthree\n\nn: 日本\nnumber: 22\nwords: four\n");
}

TEST(MarkdownOnATerminal, ShowsLooksAndLinksAsEscapeSequences) {
  EXPECT_EQ(coloured("### A", 20), "\x1B[1mA\x1B[0m\n");
  EXPECT_EQ(coloured("`a b`", 2), "\x1B[36ma\x1B[0m\n\x1B[36mb\x1B[0m\n"); // no look goes over a line's end
  EXPECT_EQ(coloured("**a*b***", 9), "\x1B[1ma\x1B[0m\x1B[1;3mb\x1B[0m\n");
  EXPECT_EQ(coloured("[a](https://b/é)", 9), "\x1B]8;;https://b/%C3%A9\x1B\\\x1B[4;34ma\x1B[0m\x1B]8;;\x1B\\\n");
  EXPECT_EQ(coloured("[a](javascript:b)", 9), "a\n");
}

TEST(MarkdownOnATerminal, NeverGetsControlCharactersOfTheText) {
  const std::string_view hostile = "a\x1B[31mb\x07 `c\x1B]0;d\x07` &#27;[2J\u202E \x9B"
                                   "1m\n\n```\n\x1B[H\r\n```\n\n<i\x1B[1m>\n\n[e](http://f/&#27;\\&#7;)";
  for (const std::string& text : {plain(hostile, 30), withoutEscapes(coloured(hostile, 30))})
    for (const char character : text)
      EXPECT_TRUE(character == '\n' || static_cast<unsigned char>(character) >= 0x20) << text;
  EXPECT_FALSE(plain(hostile, 30).contains("\u202E"));
}

TEST(MarkdownOnATerminal, KeepsToTheWidthHoweverDeepListsAndQuotesAre) {
  std::string nested;
  for (std::size_t depth = 0; depth < 40; ++depth)
    nested += std::string(2 * depth, ' ') + "- one two three four five\n";
  for (const std::string& text : {plain(nested, 24), plain(std::string(60, '>') + " one two three four five", 24)})
    for (const std::string& line : linesOf(text))
      EXPECT_LE(platform::cellsOf(line), 24U) << line;
  EXPECT_EQ(plain("a b", 0), "a\nb\n");
}

// The project's own pages: nothing is wider than the terminal but single words, and no letter is missing.
TEST(MarkdownOnATerminal, ShowsAllOfOwnPagesWithinTheWidth) {
  for (const char* name : {"README.md", "CHANGELOG.md", "ARCHITECTURE.md"}) {
    const Document page = parse(testsupport::sourceText(name));
    for (const std::size_t width : {40U, 100U}) {
      const std::string text = withoutEscapes(terminalText(page, markdownTheme, width, TerminalColours::on));
      EXPECT_EQ(lettersOf(text), lettersOf(textIn(page.root()))) << name;
      for (const std::string& line : linesOf(text)) {
        const bool isOneWord = line.find(' ', line.find_first_not_of(" │•◦▪0123456789.")) == std::string::npos;
        EXPECT_TRUE(platform::cellsOf(line) <= width || isOneWord) << name << " at " << width << ": " << line;
      }
    }
  }
}

} // namespace
} // namespace tabwright::markdown
