#include "browserdata/RichText.h"
#include "browserdata/richtext/RtfText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::browserdata {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string richTextOf(std::string_view page) {
  return richText(html::Document::parse(page));
}

// The body behind the declarations, without the group's end.
std::string textOf(std::string_view page) {
  const std::string whole = richTextOf(page);
  const std::size_t start = std::min(whole.find("\\pard"), whole.find("\\trowd"));
  return whole.substr(start, whole.size() - start - 2);
}

// The text of a page that is one plain paragraph.
std::string runsOf(std::string_view page) {
  const std::string text = textOf(page);
  constexpr std::string_view start = "\\pard\\plain ";
  EXPECT_EQ(text.substr(0, start.size()), start);
  return text.substr(start.size());
}

int countOf(std::string_view text, std::string_view part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size()))
    ++count;
  return count;
}

struct RichTextCase {
  std::string_view page;
  std::string_view expected;
};

TEST(RichText, WritesRunsWithTheStylesOfTheirElements) {
  for (const auto& [page, expected] : std::vector<RichTextCase>{
           {"plain", "plain"},
           {"a <b>b <i>c</i></b> <strong>d</strong> <em>e</em>", "a {\\b b }{\\b\\i c} {\\b d} {\\i e}"},
           {"<u>a</u><ins>b</ins><s>c</s><del>d</del>", "{\\ul ab}{\\strike cd}"},
           {"H<sub>2</sub>x<sup>2</sup><sup><sub>a</sub></sup>", "H{\\sub 2}x{\\super 2}{\\sub a}"},
           {"<code>a<b>b</b></code><kbd>c</kbd><mark>d</mark>", "{\\f1 a}{\\b\\f1 b}{\\f1 c}{\\highlight2 d}"},
           {"<q>a <q>b</q></q>", "\\u8220?a \\u8216?b\\u8217?\\u8221?"},
           {"a<img alt=' the\n image '>b<img src=x>", "a the image b"},
           {"<custom-tag>a</custom-tag><font color=red>b</font>", "ab"},
       })
    EXPECT_EQ(runsOf(page), expected) << page;
}

TEST(RichText, EscapesItsOwnSignsAndAllThatIsNotASCII) {
  for (const auto& [page, expected] : std::vector<RichTextCase>{
           {"\\par {x}", "\\\\par \\{x\\}"},
           {"caf\u00E9 \u20AC", "caf\\u233? \\u8364?"},
           {"\uFFFD\uFB01", "\\u-3?\\u-1279?"},
           {"\U0001F600", "\\u-10179?\\u-8704?"},
           {"a&nbsp;b&shy;c\u2011d", "a\\~b\\-c\\_d"},
           {"a\xC3(b", "a\\u-3?(b"},
       })
    EXPECT_EQ(runsOf(page), expected) << page;

  std::string text;
  appendRtf(text, u"a\u0001\r\u007F\u0085b\t\n"); // controls never reach readers
  EXPECT_EQ(text, "ab\\tab \\line ");
}

TEST(RichText, CollapsesWhiteSpaceAsBrowsersDo) {
  for (const auto& [page, expected] : std::vector<RichTextCase>{
           {" a \n\t b ", "a b"},
           {"a <b> b </b> c", "a {\\b b }c"},
           {"<b>a </b><i> </i>", "{\\b a}"},
           {"a <span dir=ltr> b </span> ", "a b"},
           {"a <br> b<br>", "a\\line b"},
           {"a<br><br>b", "a\\line \\line b"},
           {"<br>", ""},
           {"&nbsp; &nbsp;", "\\~ \\~"},
       })
    EXPECT_EQ(runsOf(page), expected) << page;

  EXPECT_EQ(textOf("<div>a</div> \n <div> b </div>"), "\\pard\\plain a\\par\n\\pard\\plain b");
  EXPECT_EQ(runsOf("<pre>\n a  b\n\tc\n</pre>"), "{\\f1  a  b\\line \\tab c}");
}

TEST(RichText, LeavesOutWhatBrowsersDoNotShow) {
  for (const std::string_view page :
       {"<head><title>no</title></head>yes", "yes<script>no</script><style>no</style>", "<p hidden>no<b>no</b></p>yes",
        "yes<template><p>no</template>", "yes<noscript>no</noscript>", "yes<dialog>no</dialog>", "<!-- no -->yes",
        "yes<table><tr hidden><td>no</table>", "yes<p style='color: red; DISPLAY : None !important'>no</p>",
        "yes<svg><title>no</title></svg>"})
    EXPECT_EQ(runsOf(page), "yes") << page;
  EXPECT_EQ(runsOf("<dialog open>yes</dialog>"), "yes");
  EXPECT_EQ(runsOf("<span style='display: none; display: inline'>yes</span>"), "yes");
  EXPECT_EQ(runsOf(""), "");
}

TEST(RichText, KeepsParagraphsApartOnce) {
  EXPECT_EQ(textOf("<p>a</p><p>b</p><div>c</div><div>d"), "\\pard\\plain a\\par\n"
                                                          "\\pard\\plain\\sb160 b\\par\n"
                                                          "\\pard\\plain\\sb160 c\\par\n"
                                                          "\\pard\\plain d");
  EXPECT_THAT(textOf("<h3>a</h3>"), HasSubstr("\\s3\\outlinelevel2\\keepn\\sb240\\rtlch\\ab\\afs28\\ltrch\\b\\fs28 a"));
  EXPECT_EQ(textOf("<blockquote>a<blockquote>b</blockquote></blockquote>"),
            "\\pard\\plain\\li480\\lin480\\ri480\\rin480 a\\par\n"
            "\\pard\\plain\\li960\\lin960\\ri960\\rin960\\sb160 b");
  EXPECT_THAT(textOf("a<hr>b"), HasSubstr("\\par\n\\pard\\plain \\brdrb\\brdrs\\brdrw10\\brsp20\\fs8 \\par\n"));
  EXPECT_THAT(textOf("<dl><dt>a<dd>b</dl>"), HasSubstr("a\\par\n\\pard\\plain\\li480\\lin480 b"));
}

TEST(RichText, MakesFieldsOfLinksThatOthersMayFollow) {
  EXPECT_EQ(runsOf("<a href=' HTTPS://e.org/a b?\"{x}\\\u00E9'>l <b>k</b></a>!"),
            "{\\field{\\*\\fldinst{HYPERLINK \"HTTPS://e.org/a%20b?%22%7Bx%7D%5C%C3%A9\"}}"
            "{\\fldrslt {\\ul\\cf1 l }{\\b\\ul\\cf1 k}}}!");
  EXPECT_THAT(runsOf("<a href=mailto:a@b.c>m</a>"), HasSubstr("HYPERLINK \"mailto:a@b.c\""));
  for (const std::string_view address : {"javascript:alert(1)", "java&#10;script:alert(1)", "data:text/html,x",
                                         "file:///etc/passwd", "page.html", "#top", "https:", ""})
    EXPECT_EQ(runsOf("<a href='" + std::string(address) + "'>text</a>"), "text") << address;
  EXPECT_EQ(runsOf("<a name=x>text</a>"), "text");
  // Two links side by side are two fields, and one across paragraphs has one in each.
  EXPECT_EQ(countOf(textOf("<a href=http://a/>a</a><a href=http://a/>b</a>"), "\\fldrslt"), 2);
  EXPECT_EQ(countOf(textOf("<a href=http://a/><p>a<p>b</a>"), "\\fldrslt"), 2);
}

TEST(RichText, NumbersListsAndTheirLevels) {
  const std::string nested = richTextOf("<ul><li>a<ol start=3 type=i><li>b<li>c</ol><li>d</ul>");
  EXPECT_THAT(nested, HasSubstr("\\pard\\plain\\ls1\\ilvl0\\fi-360\\li480\\lin480 {\\listtext \\u8226?\\tab}a\\par\n"
                                "\\pard\\plain\\ls2\\ilvl1\\fi-360\\li960\\lin960 {\\listtext iii.\\tab}b\\par\n"
                                "\\pard\\plain\\ls2\\ilvl1\\fi-360\\li960\\lin960 {\\listtext iv.\\tab}c\\par\n"
                                "\\pard\\plain\\ls1\\ilvl0\\fi-360\\li480\\lin480 {\\listtext \\u8226?\\tab}d"));
  EXPECT_EQ(countOf(nested, "\\listoverridecount0\\ls"), 2);
  EXPECT_EQ(countOf(nested, "{\\listlevel"), 18);
  EXPECT_THAT(nested, HasSubstr("\\levelnfc2\\levelnfcn2\\leveljc0\\levelfollow0\\levelstartat3"));

  const auto marks = [](std::string_view page) {
    std::string result;
    const std::string text = richTextOf(page);
    for (std::size_t at = text.find("listtext "); at != std::string::npos; at = text.find("listtext ", at)) {
      at += 9;
      result += text.substr(at, text.find("\\tab", at) - at) + " ";
    }
    return result;
  };
  EXPECT_EQ(marks("<ol><li>a<li value=7>b<li>c</ol><ol><li>d</ol>"), "1. 7. 8. 1. ");
  EXPECT_EQ(marks("<ol reversed><li>a<li>b</ol>"), "2. 1. ");
  EXPECT_EQ(marks("<ol type=A start=26><li>a<li>b</ol>"), "Z. AA. ");
  EXPECT_EQ(marks("<ol type=I start=3999><li>a<li>b</ol>"), "MMMCMXCIX. 4000. ");
  EXPECT_EQ(marks("<ol start=junk><li></ol><ol start=99999999999><li>"), "1. 1. ");

  // Only the first paragraph of an item is marked; an item of nothing but a list is, too.
  EXPECT_EQ(textOf("<ul><li><p>a</p><p>b</p></ul>"),
            "\\pard\\plain\\ls1\\ilvl0\\fi-360\\li480\\lin480 {\\listtext \\u8226?\\tab}a\\par\n"
            "\\pard\\plain\\li480\\lin480\\sb160 b");
  EXPECT_EQ(countOf(textOf("<ul><li><ul><li>a</ul></ul>"), "\\listtext"), 2);
  EXPECT_THAT(textOf("<li>a"), HasSubstr("\\ls1\\ilvl0"));
}

TEST(RichText, LaysOutTablesBySpans) {
  const std::string text = textOf("before<table><caption>c</caption><thead><tr><th>h<th>i</thead>"
                                  "<tr><td rowspan=2>a<td>b<tr><td>d</table>after");
  EXPECT_LT(text.find(" c\\"), text.find("\\trowd"));
  EXPECT_EQ(countOf(text, "\\trowd"), 3);
  EXPECT_EQ(countOf(text, "\\cell\n"), 6);
  EXPECT_EQ(countOf(text, "\\row\n"), 3);
  EXPECT_EQ(countOf(text, "\\trhdr"), 1);
  EXPECT_EQ(countOf(text, "\\clvmgf"), 1);
  EXPECT_EQ(countOf(text, "\\clvmrg"), 1);
  EXPECT_THAT(text, HasSubstr("\\intbl\\itap1\\qc {\\b h}\\cell"));
  EXPECT_THAT(text, HasSubstr("\\row\n\\pard\\plain\\sb160 after"));

  // A cell over columns ends where the last of them does.
  const std::string wide = textOf("<table><tr><td>a<td>b<tr><td colspan=2>c</table>");
  EXPECT_EQ(countOf(wide, "\\cellx9360"), 2);
  EXPECT_EQ(countOf(wide, "\\cellx4680"), 1);
  // Tables side by side stay two, and paragraphs in a cell are parted.
  EXPECT_THAT(textOf("<table><tr><td>a</table><table><tr><td>b</table>"), HasSubstr("\\row\n\\pard\\plain \\par\n"
                                                                                    "\\trowd"));
  EXPECT_THAT(textOf("<table><tr><td><p>a<p>b</table>"),
              HasSubstr(" a\\par\n\\pard\\plain\\intbl\\itap1\\sb160 b\\cell"));
}

TEST(RichText, NestsTablesUpToADepth) {
  const std::string nested = textOf("<table><tr><td>a<table><tr><td>b<td>c</table>d</table>");
  EXPECT_THAT(nested, HasSubstr("\\intbl\\itap2 b\\nestcell{\\nonesttables\\par}"));
  EXPECT_THAT(nested, HasSubstr("{\\*\\nesttableprops\\trowd"));
  EXPECT_THAT(nested, HasSubstr("\\intbl\\itap1\\sb160 d\\cell"));

  std::string deep;
  for (int level = 0; level < 20; ++level)
    deep += "<table><tr><td>x" + std::to_string(level) + " ";
  const std::string text = textOf(deep);
  EXPECT_THAT(text, HasSubstr("\\itap5"));
  EXPECT_THAT(text, Not(HasSubstr("\\itap6")));
  for (int level = 0; level < 20; ++level)
    EXPECT_THAT(text, HasSubstr(" x" + std::to_string(level))) << level;
}

TEST(RichText, MarksRunsFromRightToLeft) {
  for (const auto& [page, expected] : std::vector<RichTextCase>{
           {"a \u05D0 1 \u05D1 b", "a {\\ltrch\\rtlch \\u1488? 1 \\u1489?} b"},
           {"a <b>\u05D0</b>", "a {\\ltrch\\b\\rtlch\\ab \\u1488?}"},
           {"a <span dir=rtl>1 !</span>", "a {\\ltrch\\rtlch 1 !}"},
           {"a <bdo dir=rtl>b</bdo>", "a {\\ltrch\\rtlch \\u8238?b}\\u8236?"},
           {"a \U0001F600 \u65E5", "a \\u-10179?\\u-8704? \\u26085?"},
       })
    EXPECT_EQ(runsOf(page), expected) << page;

  EXPECT_EQ(textOf("<p dir=RTL>a</p>"), "\\pard\\plain\\rtlpar\\qr a");
  EXPECT_THAT(textOf("<div dir=rtl><ul><li>\u05D0</ul></div>"), HasSubstr("\\rtlpar\\qr\\ls1\\ilvl0\\fi-360\\lin480 "));
  EXPECT_THAT(textOf("\u05D0 first letter"), HasSubstr("\\rtlpar"));
  EXPECT_THAT(textOf("<p dir=ltr>\u05D0</p>"), Not(HasSubstr("\\rtlpar")));
  EXPECT_THAT(textOf("<p dir=rtl>\u05D0 <span dir=ltr>1-2</span></p>"), HasSubstr("? }1-2"));
  EXPECT_THAT(textOf("<table dir=rtl><tr><td>a</table>"), HasSubstr("\\rtlrow"));
}

TEST(RichText, IsBalancedASCIIInProportionToAnyPage) {
  const auto repeated = [](std::string_view part, int times) {
    std::string result;
    for (int time = 0; time < times; ++time)
      result += part;
    return result;
  };
  struct Hostile {
    std::string page;
    std::size_t growth; // bytes per byte at most
  };
  for (const Hostile& hostile : {
           Hostile{repeated("<ul><li>}{\\", 600), 60},
           {repeated("<table><tr><td>{", 300), 60},
           {"<table><tr>" + repeated("<td rowspan=65534>a", 62) + "<td>b" + repeated("<tr><td>c", 2000), 60},
           {"<table><tr>" + repeated("<td rowspan=65534>a", 63) + repeated("<tr>", 5000), 60},
           {"<table>" + repeated("<tr><td colspan=1000 rowspan=9>a<td>b", 1000), 60},
           {"<table><tr>" + repeated("<td>a\\", 1000), 60},
           {"<a href='https://e.org/" + repeated("x", 5000) + "'>" + repeated("<div>x</div>", 2000), 60},
           {repeated("<ol><li>x</ol>", 3000), 200}, // up to the last list that there may be
           {repeated("<b><i><u>", 2000) + "x", 60},
           {"<p dir=rtl>" + repeated("\u05D0{ a}", 2000), 60},
       }) {
    const std::string text = richTextOf(hostile.page);
    EXPECT_LT(text.size(), 4000 + hostile.growth * hostile.page.size()) << hostile.page.substr(0, 40);
    EXPECT_TRUE(std::ranges::all_of(text, [](char c) { return c == '\n' || (c >= ' ' && c < 0x7F); }));
    int depth = 0;
    int lowest = 1;
    for (std::size_t at = 0; at + 2 < text.size(); ++at) {
      if (text[at] == '\\')
        ++at;
      else if (text[at] == '{')
        ++depth;
      else if (text[at] == '}')
        lowest = std::min(lowest, --depth);
    }
    EXPECT_EQ(depth, 1) << hostile.page.substr(0, 40);
    EXPECT_EQ(lowest, 1) << hostile.page.substr(0, 40);
  }
  // All cells beyond the last column are still there.
  EXPECT_EQ(countOf(textOf("<table><tr>" + repeated("<td>x1x", 100)), "x1x"), 100);
}

} // namespace
} // namespace tabwright::browserdata
