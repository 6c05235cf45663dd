#include "markdown/RichText.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace tabwright::markdown {
namespace {

std::string richTextOf(std::string_view markdown, ColourScheme scheme = ColourScheme::light) {
  return richText(parse(markdown), markdownTheme, scheme);
}

// The structure without looks, which the theme decides.
std::string structureOf(std::string_view markdown) {
  return std::regex_replace(richTextOf(markdown), std::regex(" style=\"[^\"]*\""), "");
}

TEST(RichText, HasAnElementForEachConstruct) {
  const struct {
    std::string_view markdown;
    std::string_view html;
  } cases[]{
      {"## 2. *Allow*", "<h2>2. <em>Allow</em></h2>"},
      {"a\nb  \nc", "<p>a\nb<br>c</p>"},
      {"> a", "<blockquote><p>a</p></blockquote>"},
      {"- a\n  - b", "<ul><li>a<ul><li>b</li></ul></li></ul>"},
      {"3. a\n\n4. b", "<ol start=\"3\"><li><p>a</p></li><li><p>b</p></li></ol>"},
      {"- [x] a\n\n- [ ] b", "<ul><li>☑ a</li><li>☐ b</li></ul>"},
      {"```\na\n  b\n```\n\n---", "<pre>a\n  b</pre><hr>"},
      {"|a|b|\n|-|-:|\n|1|2|", "<table border=\"1\" cellspacing=\"0\" cellpadding=\"4\"><tr><th "
                               "align=\"left\">a</th><th align=\"right\">b</th></tr>"
                               "<tr><td align=\"left\">1</td><td align=\"right\">2</td></tr></table>"},
      {"**a** ~~b~~ `c`", "<p><strong>a</strong> <s>b</s> <code>c</code></p>"},
      {"[a](https://b.c/?d&e \"f\\\"g\")", "<p><a href=\"https://b.c/?d&amp;e\" title=\"f&quot;g\">a</a></p>"},
      {"![a *b*](https://c/d.png)", "<p><span>a <em>b</em></span></p>"},
  };
  for (const auto& [markdown, html] : cases)
    EXPECT_EQ(structureOf(markdown), html) << markdown;
}

TEST(RichText, LetsNoMarkupOrAddressOfTheTextThrough) {
  EXPECT_EQ(structureOf("<script>alert(1)</script>"), "<pre>&lt;script&gt;alert(1)&lt;/script&gt;</pre>");
  EXPECT_EQ(structureOf("a <img src=\"b\">"), "<p>a <span>&lt;img src=&quot;b&quot;&gt;</span></p>");
  EXPECT_EQ(structureOf("`<b>` & \\<i>"), "<p><code>&lt;b&gt;</code> &amp; &lt;i&gt;</p>");
  EXPECT_EQ(structureOf("[a](javascript:b) [c](d.md) [e](file:///f)"), "<p>a c e</p>");
  EXPECT_EQ(structureOf("[a](<https://b/\"onclick=\"c>)"), "<p><a href=\"https://b/%22onclick=%22c\">a</a></p>");
  EXPECT_EQ(structureOf("a\x1B[31m\u202Eb"), "<p>a[31mb</p>");
}

TEST(RichText, LooksAsTheThemeSays) {
  Theme theme = markdownTheme;
  theme.looks[static_cast<std::size_t>(Theme::Role::heading1)] = {.role = Theme::Role::heading1,
                                                                  .size = 150,
                                                                  .isItalic = true,
                                                                  .colour =
                                                                      Theme::ColourPair{{1, 2, 3}, {0xA, 0xB, 0xC}}};
  theme.spacing = {.paragraph = 5, .headingAbove = 7, .quoteIndentation = 0, .cellPadding = 0};
  EXPECT_EQ(richText(parse("# a"), theme, ColourScheme::light),
            "<h1 style=\"margin-top:7px;margin-bottom:5px;font-size:150%;font-style:italic;color:#010203;\">a</h1>");
  EXPECT_TRUE(richText(parse("# a"), theme, ColourScheme::dark).contains("color:#0a0b0c;"));
}

} // namespace
} // namespace tabwright::markdown
