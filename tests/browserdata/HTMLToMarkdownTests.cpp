#include "browserdata/HTMLToMarkdown.h"
#include "support/FailureText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tabwright::browserdata {
namespace {

std::string converted(std::string_view html) {
  return HTMLToMarkdown{.html = std::string(html)}.convert();
}

struct Case {
  std::string_view html;
  std::string_view markdown;
};

void expectAll(std::initializer_list<Case> cases) {
  for (const Case& test : cases)
    EXPECT_EQ(converted(test.html), test.markdown) << test.html;
}

TEST(HTMLToMarkdown, ConvertsTextAndBlocks) {
  expectAll({
      {"", ""},
      {"  just \n text ", "just text "},
      {"<p>a</p><p>b</p>c", "a\n\nb\n\nc"},
      {"<div>a<div>b</div></div>", "ab\n\n"},
      {"<h1>a</h1><h3>b <i>c</i></h3>d", "\n\n# a\n\n### b _c_\n\nd"},
      {"a<br>b<br/>c", "a  \nb  \nc"},
      {"a<hr>b", "a\n\n---\n\nb"},
      {"<section><span>a</span> <u>b</u><sub>2</sub></section>", "a b2"},
      {"<details><summary>s</summary>t</details>", "\n**s**  \nt"},
      {"<figure><img src=https://x/i.png alt=A><figcaption>c</figcaption></figure>",
       "![A](https://x/i.png)\n\n_c_\n\n"},
      {"*a* _b_ &lt;c&gt; 1. d", "*a* _b_ <c> 1. d"},
      {"<p>a</p><p> </p><p></p><p>b</p>", "a\n\nb\n\n"},
  });
}

TEST(HTMLToMarkdown, ConvertsEmphasisAndCode) {
  expectAll({
      {"<em>a</em><i>b</i><cite>c</cite><dfn>d</dfn><q>e</q>", "_a__b__c__d__e_"},
      {"<b>a</b> <strong>b</strong> <var>c</var>", "**a** **b** ***c***"},
      {"<del>a</del><s>b</s>", "~~a~~~~b~~"},
      {"<strike>a</strike>", "~~a~~"},
      {"use <code>a &amp;&amp; b</code>", "use `a && b`"},
      {"<pre><code>a\n  b</code></pre>", "```\na b\n```\n\n"},
      {"<code><pre>a</pre></code>", "`a`"},
      {"<pre>a</pre>", "a"},
      {"<pre><code>a<br><br><br><br>b</code></pre>", "```\na  \n\nb\n```\n\n"},
      {"<abbr title='World Wide Web'>WWW</abbr> <abbr title=' '>x</abbr>", "WWW (World Wide Web) x"},
      {"<dl><dt>t<dd>d<dt>u<dd>e</dl>", "**t:**d\n**u:**e\n\n"},
  });
}

TEST(HTMLToMarkdown, ConvertsLinksAndImages) {
  expectAll({
      {"<a href=https://x/?a=1&amp;b=2> <b> t </b> </a>.", "[** t **](https://x/?a=1&b=2)."},
      {"<a href=https://x> one <br> two </a>", "[one <br> two](https://x)"},
      {"<a href=mailto:a@b.c>m</a><a href=ftp://f>f</a>", "[m](mailto:a@b.c)[f](ftp://f)"},
      {"<a href='javascript:x()'>a</a><a href=/b>b</a><a>c</a>", "[a]()[b]()[c]()"},
      {"<a href=https://x>  </a>", "[](https://x)"},
      {"<img src=https://x/i.png alt='A b' title=' '>t", "![A b](https://x/i.png)\n\nt"},
      {"<img src=https://x/i.png title=T>", "![](https://x/i.png \"T\")\n\n"},
      {"<img src=data:image/png;base64,AA== alt=A>", "![A]()\n\n"},
      {"<a href=https://x><img src=https://x/i.png alt=A></a>", "[![A](https://x/i.png)](https://x)"},
  });
}

TEST(HTMLToMarkdown, ConvertsListsWithTheirLevels) {
  expectAll({
      {"<ul><li>a<li>b</ul>", "\n- a\n- b\n\n"},
      {"<ol start=5><li>a</li> text <li>b</li></ol>", "\n1. a\n1. b\n\n"},
      {"<ul><li>a<ul><li>b<ol><li>c</ol></ul><li>d</ul>", "\n- a\n    - b\n    \t1. c\n- d\n\n"},
      {"<ul><li>a<div>x<ul><li>b</ul></div></ul>", "\n- ax\n    - b\n\n"},
      // A list that begins an item goes under the item before it, if there is one.
      {"<ul><li>a<li><ul><li>b</ul></ul>", "\n- a\n\n    - b\n\n"},
      {"<ul><li><ol><li>a</ol></ul>", "\n\n1. a\n\n"},
      {"<ul><li></li></ul>", "\n- \n\n"},
      // A second paragraph ends the lists around it, so an indented marker behind it would be code.
      {"<ul><li><p>a</p><ul><li>b</ul></ul>", "\n- a\n\n    - b\n\n"},
      {"<ul><li><p>a</p><p>b</p><ul><li>c<ol><li>d</ol></ul><li>e<ul><li>f</ul></ul>",
       "\n- a\n\nb\n\n- c\n    1. d\n- e\n    - f\n\n"},
      {"<ul><li>a<ul><li><p>b</p><p>c</p><li>d</ul></ul>", "\n- a\n    - b\n\nc\n\n- d\n\n"},
      {"<ul><li>a<blockquote>q</blockquote><ul><li>b</ul></ul>", "\n- a\n> q\n\n- b\n\n"},
      {"<ul><li>a<br>b<ul><li>c</ul></ul>", "\n- a  \nb\n    - c\n\n"},
      {"<blockquote><ul><li>a<ul><li>b</ul></ul></blockquote>", "\n> \n> - > > a> \n> \t- > > b> \n> \n\n"},
  });
}

TEST(HTMLToMarkdown, MarksEachPieceOfAQuoteAndEachLineOfAnAside) {
  expectAll({
      {"<blockquote>a</blockquote>b", "\n> a\n\nb"},
      {"<blockquote>a <b>b</b> c</blockquote>", "\n> a > **> b> **> >  c\n\n"},
      {"<aside>a<br>b<p>c</p></aside>d", "\n> [! Aside]\n> a  \n> bc\n> \n\nd"},
      {"<aside><h2>a</h2>b</aside>", "\n> [! Aside]\n> \n\n> ## a\n> \nb\n\n"},
  });
}

TEST(HTMLToMarkdown, ConvertsTablesToColumnsOfOneWidth) {
  expectAll({
      {"<table><thead><tr><th>a<th>Länge</tr></thead><tbody><tr><td>long<td>1</table>x",
       "\n\n| a    | Länge |\n| ---- | ----- |\n| long | 1     |\n\nx"},
      {"<table><tr><td>a<tr><td>b<td>c</table>", "\n\n| a |\n| b | c |\n\n"},
      {"<!-- of a selection -->\n<TR class=x><td>a</td></TR><tr><td>b</td></tr>", "\n\n| a |\n| b |\n\n"},
      {"<td>a</td><td>b</td>", "\n\n| a | b |\n\n"},
      {"<track>a</td><td>b</td>", "ab"},
      {"<table><caption>gone</caption><tr><td>👩‍👧é<td></table>", "\n\n| 👩‍👧é |  |\n\n"},
      {"<table><tr><td><p>a</p><p>b</p><ul><li>c</ul></table>", "\n\n| a b - c |\n\n"},
      {"<table><tr><td><table><tr><td>in</table></table>", "\n\n| | in | |\n\n"},
  });
}

TEST(HTMLToMarkdown, TakesOutWhatIsNoText) {
  expectAll({
      {"<head><title>t</title></head><script>s</script><style>c</style><!-- n -->a", "a"},
      {"<form><label>Name</label> <input value=v><button onclick=x>Go</button></form>", "Name Go"},
      {"<svg><text>t</text><path d='M0'/></svg>", "t"},
  });
}

TEST(HTMLToMarkdown, UsesTheSeparatorsItIsGiven) {
  EXPECT_EQ((HTMLToMarkdown{"<p>a</p>\n<ul><li>b<ul><li>c</ul></ul>", "\r\n", "\r\n\r\n"}.convert()),
            "a\r\n\r\n\r\n- b\r\n    - c\r\n\r\n");
}

TEST(HTMLToMarkdown, PadsNoTableOutOfProportionAndLosesNothingOfIt) {
  std::string page = "<table><tr><td>" + std::string(20'000, 'x');
  for (int row = 0; row < 20'000; ++row)
    page += "<tr><td>y";
  const std::string markdown = converted(page);
  EXPECT_LT(markdown.size(), 400'000U);
  EXPECT_EQ(std::ranges::count(markdown, 'x'), 20'000);
  EXPECT_EQ(std::ranges::count(markdown, 'y'), 20'000);
}

TEST(HTMLToMarkdown, LeavesOutWhatOnlyTellsOfADrawing) {
  EXPECT_EQ(converted("a<svg><title>T</title><desc>D</desc><text>shown</text></svg>"), "ashown");
}

TEST(HTMLToMarkdown, RefusesWhatWouldGrowOutOfProportion) {
  std::string quotes;
  for (int count = 0; count < 500; ++count)
    quotes += "<blockquote>";
  for (int count = 0; count < 20'000; ++count)
    quotes += "x<b>y</b>";
  EXPECT_EQ(testsupport::failureText([&] { return converted(quotes); }),
            "The HTML can't be converted: it is too long, or its Markdown would be out of all proportion to it");
}

} // namespace
} // namespace tabwright::browserdata
