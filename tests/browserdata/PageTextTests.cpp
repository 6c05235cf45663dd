// The Markdown and plain text of pages by what they hold. That nothing of a page is lost is tried in
// PageTextRoundTripTests.
#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/PageText.h"
#include "browserdata/pagetext/PageAddress.h"
#include "support/FailureText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::browserdata {
namespace {

using Cases = std::vector<std::pair<std::string_view, std::string_view>>;

std::string markdownOf(std::string_view html) {
  return PageText{.html = html, .base = "https://x.test/a/b"}.convert().text;
}

void expectMarkdown(const Cases& cases) {
  for (const auto& [html, text] : cases)
    EXPECT_EQ(markdownOf(html), std::string(text) + (text.empty() ? "" : "\n")) << html;
}

TEST(PageText, EscapesWhatWouldMarkUpAndNothingElse) {
  expectMarkdown({
      {"snake_case 2 * 3 a*b _ ~ [x] 5 < 6 & C# 1.5 - + #1 !", "snake_case 2 * 3 a*b _ ~ [x] 5 < 6 & C# 1.5 - + #1 !"},
      {"*x* _y_ `z` ~~q~~", "\\*x\\* \\_y\\_ \\`z\\` \\~\\~q\\~\\~"},
      {"one * and `one", "one * and `one"},
      {"[a](b) &lt;b> &amp;lt; \\* C:\\dir", "[a\\](b) \\<b> &amp;lt; \\\\* C:\\dir"},
      {"1. a<br>2) b<br>- c<br>+ d<br># e<br>> f<br>---<br>===<br>```<br>[x]: y",
       "1\\. a\\\n2\\) b\\\n\\- c\\\n\\+ d\\\n\\# e\\\n\\> f\\\n\\---\\\n\\===\\\n\\`\\`\\`\\\n\\[x]: y"},
      {"a | b<br>--- | ---", "a | b\\\n\\--- | ---"},
      {"see http://y.test/a_b*c* and http://y.test/d_e", "see http\\://y.test/a_b\\*c\\* and http://y.test/d_e"},
      {"<h2># a #</h2>", "## # a \\#"},
      {"wow!<a href=/>x</a>", "wow\\![x](https://x.test/)"},
      {"&amp;copy; &copy; a&nbsp;b &#x1F600;", "&amp;copy; © a\u00a0b 😀"},
  });
}

TEST(PageText, MarksOnlyWhatCanBeReadAsMarked) {
  expectMarkdown({
      {"a <b>b </b>c<i> d</i> <b> </b><em></em>e", "a **b** c _d_ e"},
      {"w<em>or</em>d <b>b</b>c <i>x</i>, (<i>y</i>)", "w*or*d **b**c _x_, (_y_)"},
      {"a<b>“q”</b>b but <b>“q”</b>", "a“q”b but **“q”**"},
      {"<b><strong>x</strong><i>y</i></b> <b>a</b><b>b</b>", "**xy** **ab**"},
      {"<del>x</del> <s>y</s> <b>a<br></b>b", "~~x~~ ~~y~~ **a**\\\nb"},
      {"<code>a`b</code> <code>`</code> <code>a</code><code>b</code> <kbd>x</kbd> <code> </code>",
       "``a`b`` `` ` `` `ab` `x`"},
      {"<b>a<p>b<p>c</b>", "**a**\n\n**b**\n\n**c**"},
      {"H<sub>2</sub>O <q>said</q> a<br><br>b", "H<sub>2</sub>O “said” a\n\nb"},
  });
}

TEST(PageText, LinksAndImagesHoldOutsideOfThePage) {
  expectMarkdown({
      {"<a href='../c d?x=1&amp;y' title='T \"q\"'>l [1]</a>",
       "[l \\[1\\]](https://x.test/c%20d?x=1&y \"T \\\"q\\\"\")"},
      {"<a href=https://y.test/>https://y.test/</a> <a href=(>x</a>", "<https://y.test/> [x](https://x.test/a/%28)"},
      {"<a href='javascript:x'>a</a> <a href=#t>t</a> <a>n</a> <a href=u></a>", "a [t](https://x.test/a/b#t) n"},
      {"<a href=u aria-label=Next><svg><text>s</svg></a>", "[Next](https://x.test/a/u)"},
      {"<a href=u><h3>T</h3><p>p</a>", "### [T](https://x.test/a/u)\n\n[p](https://x.test/a/u)"},
      {"<h2>T <a href=#t>¶</a></h2>", "## T"},
      {"<img src=i.png alt='A *b*'> <img src=i.png alt=''> <img src=data:, alt=d> <a href=u><img src=i.png alt=''></a>",
       "![A \\*b\\*](https://x.test/a/i.png) d [![](https://x.test/a/i.png)](https://x.test/a/u)"},
      {"<base href=//z.test/d/><a href=e>x</a>", "[x](https://z.test/d/e)"},
  });
  EXPECT_EQ(absoluteAddress("a/../b[1]%", "https://x.test/c/"), "https://x.test/c/b%5B1%5D%25");
  EXPECT_EQ(absoluteAddress(" ü\n", ""), "%C3%BC");
  EXPECT_EQ(absoluteAddress("?q", "no base"), "?q");
}

TEST(PageText, ListsKeepTheirLevelsAndNumbers) {
  expectMarkdown({
      {"<ul><li>a<ul><li>b<ol start=3><li>c<li>d</ol></ul><li>e</ul>", "- a\n  - b\n\n    3. c\n    4. d\n\n- e"},
      {"<ol start=9><li>a<li><p>b<p>c<li>d</ol>", "9. a\n10. b\n\n    c\n\n11. d"},
      {"<ul><li>a</ul><ul><li>b</ul>", "- a\n\n* b"},
      {"<ul>t<ul><li>n</ul><li> </ul>", "- t\n  - n"},
      {"<ul><li><input type=checkbox checked>a<li><label><input type=checkbox> b</label></ul>", "- [x] a\n- [ ] b"},
      {"<ul><li><pre>c\n d</pre><li><hr></ul>", "- ```\n  c\n   d\n  ```\n- ***"},
      {"<dl><dt>T<dd>D<dd><p>E<p>F</dl>", "**T**\n- D\n- E\n\n  F"},
      {"<blockquote>a<blockquote>b</blockquote><ul><li>c</ul></blockquote><blockquote>d</blockquote>",
       "> a\n>\n> > b\n>\n> - c\n\n> d"},
  });
}

TEST(PageText, CodeKeepsItsLines) {
  expectMarkdown({
      {"<pre><code class='x language-c++'>a\n\n  *b*\t<i>c</i>&lt;\n\n</code></pre>", "```c++\na\n\n  *b*\tc<\n```"},
      {"<pre>````\n```</pre>", "`````\n````\n```\n`````"},
      {"<pre>a<br>b<div>c</div>d<button>Copy</button></pre><pre> </pre>", "```\na\nb\nc\nd\n```"},
  });
}

TEST(PageText, TablesKeepTheirColumns) {
  expectMarkdown({
      {"<table><caption>C</caption><tr><th>a<th align=right>b|<tbody><tr><td><p>c<p>d<td><code>|</code></table>",
       "C\n\n| a | b\\| |\n| --- | ---: |\n| c<br>d | `\\|` |"},
      {"<table><tr><td rowspan=2>a<td colspan=2>b<tr><td>c<td>d<tr><td><td><td></table>",
       "| | | |\n| --- | --- | --- |\n| a | b | |\n| | c | d |"},
      {"<table><tr><th>h<th>i<tr><td><table><tr><td>x<td>y<tr><td>z</table><td><ul><li>p<li>q</ul></table>",
       "| h | i |\n| --- | --- |\n| x y<br>z | p<br>q |"},
      {"<table role=presentation><tr><td><h2>a</h2><td>b</table>", "## a\n\nb"},
      {"<table><tr><td> </table>", ""},
      {"<table><tr><th>a<th>b<tr hidden><td>c<td>d<tr style='Display : none'><td>e</table>",
       "| a | b |\n| --- | --- |"},
  });
}

TEST(PageText, LeavesOutWhatAReaderDoesNotSee) {
  expectMarkdown({
      {"<title>t</title><style>s</style><script>x</script>a<template>b</template><noscript>c</noscript><svg><text>d</"
       "svg>"
       "<p hidden>e<p style='color:red;display:none'>f<p "
       "style='x-display:none'>g<dialog>h</dialog><textarea>i</textarea>"
       "<select><option>j</select>",
       "a\n\ng"},
  });
}

TEST(PageText, PlainTextHasNoMarks) {
  EXPECT_EQ((PageText{.html = "<h1>A</h1><p>*b* <b>c</b> <a href=u>d</a><br>e<ul><li>f</ul><blockquote>g</blockquote>"
                              "<pre>h\n i</pre><table><tr><td>j<td>k|</table>",
                      .form = TextForm::plain}
                 .convert()
                 .text),
            "A\n\n*b* c d\ne\n\n- f\n\ng\n\nh\n i\n\nj\tk|\n");
}

TEST(PageText, FindsTheMainContent) {
  std::string prose = "<p>" + std::string(30, 'w');
  for (int count = 0; count < 10; ++count)
    prose += " word, word and <a href=x>word</a>";
  const std::string frame =
      "<nav><p>Home and many more words of a menu</nav><div class='x Sidebar'>" + prose + "</div>";
  const auto mainOf = [](const std::string& html) {
    const PageText::Result result = PageText{.html = html, .part = PageText::Part::mainContent}.convert();
    return result.part == PageText::Part::mainContent ? result.text : "whole: " + result.text;
  };
  const std::string wanted = mainOf("<main>" + prose + "</main>");
  EXPECT_TRUE(wanted.starts_with("www")) << wanted;
  for (const std::string& page :
       {frame + "<main><nav>n</nav>" + prose + "</main><footer>f</footer>",
        frame + "<div role=main>" + prose + "</div><p>Some other paragraph that is long enough",
        frame + "<p>A short paragraph of an intro<article>" + prose + "</article>",
        frame + "<div><div><div>" + prose + "</div></div></div><div><p>Some other paragraph, much shorter</div>"})
    EXPECT_EQ(mainOf(page), wanted) << page;
  EXPECT_EQ(mainOf("<main>short</main><nav>n</nav>"), "whole: short\n\nn\n");
}

TEST(PageText, CostsInProportionToThePage) {
  const auto repeated = [](const std::string& text, int count) {
    std::string all;
    for (int index = 0; index < count; ++index)
      all += text;
    return all;
  };
  for (const std::string& html :
       {repeated("<table><tr><td colspan=1000 rowspan=60000>", 2'000), repeated("<blockquote><ol><li>", 5'000) + "x",
        repeated("<b><i><del>", 20'000) + "x", repeated("<tr><td colspan=1000>x<td colspan=1000>", 2'000)})
    EXPECT_LT(markdownOf(html).size(), 2'000'000U);
  const std::string href(100'000, 'u');
  EXPECT_EQ(testsupport::failureText([&] { return markdownOf("<a href=" + href + ">" + repeated("<p>x", 5'000)); }),
            errorDescription(HTMLToMarkdownError::unprocessableHTML, ""));
}

} // namespace
} // namespace tabwright::browserdata
