#include "html/Document.h"
#include "html/ParseFault.h"
#include "support/FailureText.h"
#include "support/Texts.h"

#include <gtest/gtest.h>

#include <string>

namespace tabwright::html {
namespace {

// A tree in one line: "p[class=x](text, b(text))".
std::string outline(const Node& node) {
  if (node.isText())
    return std::string(node.text());
  std::string text(node.name());
  for (const Attribute& attribute : node.attributes())
    text += "[" + std::string(attribute.name) + "=" + std::string(attribute.value) + "]";
  std::string inside;
  for (const Node child : node.children())
    inside += (inside.empty() ? "" : ",") + outline(child);
  return inside.empty() ? text : text + "(" + inside + ")";
}

std::string bodyOf(std::string_view page) {
  const Document document = Document::parse(page);
  for (const Node part : document.root().children())
    if (part.name() == "body") {
      const std::string body = outline(part);
      return body == "body" ? "" : body.substr(5, body.size() - 6);
    }
  return "no body";
}

int depthOf(const Node& node) {
  if (node.isText())
    return 0;
  int deepest = 0;
  for (const Node child : node.children())
    deepest = std::max(deepest, depthOf(child));
  return deepest + 1;
}

using testsupport::repeated;

struct Case {
  std::string_view page;
  std::string_view body;
};

TEST(Document, IsTheTreeThatABrowserMakes) {
  for (const Case& test : std::initializer_list<Case>{
           {"", ""},
           {"text", "text"},
           {"<p>a<p>b", "p(a),p(b)"},
           {"<ul><li>a<li>b</ul>", "ul(li(a),li(b))"},
           {"<b>1<p>2</b>3", "b(1),p(b(2),3)"},
           {"<script\v>a<b>c", "script\v(a,b(c))"},
           {"<table><tr><td>x</table>", "table(tbody(tr(td(x))))"},
           {"<table>out<tr><td>in</table>", "out,table(tbody(tr(td(in))))"},
           {"<A HREF='x' hReF=y Title>t</a>", "a[href=x][title=](t)"},
           {"<x-new data-a=1>t</x-new>", "x-new[data-a=1](t)"},
           {"<select><div><option>a<option>b</select>c", "select(div(option(a),option(b))),c"},
           {"<p>a<select><b>x</p></select>y", "p(a,select(b(x,p)),b(y))"},
           {"<p>a<table>", "p(a,table)"}, // read as old pages are
           {"<!doctype html><p>a<table>", "p(a),table"},
           {"<a>1<div>2<a>3</div>4", "a(1),div(a(2),a(3)),a(4)"},
           {"<b x><b x><b x><b x><p></b></b>y", "b[x=](b[x=](b[x=](b[x=]),p(b[x=](b[x=]),y)))"},
           {"<table><b>1<tr>2<td>3</b>4</table>5", "b(1),b(2),table(tbody(tr(td(34)))),b(5)"},
           {"<form><div></form><p>x", "form(div(p(x)))"},
           {"a<br/>b</br>c", "a,br,b,br,c"},
           {"</body></html>after", "after"},
           {"<html><body>t<body id=z>u", "tu"},
       })
    EXPECT_EQ(bodyOf(test.page), test.body) << test.page;
}

TEST(Document, ReadsTextAsABrowserDoes) {
  for (const Case& test : std::initializer_list<Case>{
           {"a &lt; b &amp;amp; &eacute;&#x1F600;", "a < b &amp; \u00e9\U0001F600"},
           {" a \n\t b\r\n", "a b "},
           {"a\u00a0 b", "a\u00a0 b"},
           {"1 < 2 <3> <", "1 < 2 <3> <"},
           {"\xff\xfe", "\ufffd\ufffd"},
           {"a<b", "a"},
           {"a<b c='", "a"},
       })
    EXPECT_EQ(bodyOf(test.page), test.body) << test.page;
  const Document page = Document::parse("<pre>a\n  b</pre>");
  Node node = page.root();
  for (const std::string_view name : {"body", "pre", "#text"}) {
    for (const Node child : node.children())
      if (child.name() == name) {
        node = child;
        break;
      }
  }
  EXPECT_EQ(node.wholeText(), "a\n  b");
  EXPECT_EQ(node.text(), "a b");
}

TEST(Document, LeavesOutWhatIsNotRead) {
  for (const Case& test : std::initializer_list<Case>{
           {"a<!-- <b>x</b> -->b<!-->c<!--->d<!-- e --!>f<!-- g", "abcdf"},
           {"a<script>if (1 < 2) '</scr' + '<p>'</script>b<style>p{}</style>c", "abc"},
           {"<script><!-- <script>1</script>2 --></script>b", "b"},
           {"<iframe><p>x</iframe>a<noframes>y</noframes>", "a"},
           {"<template><p>x<template>y</template>z</template>a", "a"},
           {"<?php x ?>a<!doctype x>b</>c</ d>e", "abce"},
           {"a&am<!-- x -->p;b", "a&amp;b"},
       })
    EXPECT_EQ(bodyOf(test.page), test.body) << test.page;
}

TEST(Document, KeepsTextOfElementsThatHoldNothingElse) {
  EXPECT_EQ(bodyOf("<textarea>a <b> &amp; </textareab></textarea>c"), "textarea(a <b> & </textareab>),c");
  EXPECT_EQ(bodyOf("<xmp>a <b> &amp;</xmp>c"), "pre(a <b> &amp;),c");
  EXPECT_EQ(bodyOf("a<plaintext><b>&amp;</plaintext>"), "a,pre(<b>&amp;</plaintext>)");
  EXPECT_EQ(outline(Document::parse("<title>a <b></title>t").root()), "html(head(title(a <b>)),body(t))");
}

TEST(Document, TakesTheTextsOfDrawingsAndFormulas) {
  for (const Case& test : std::initializer_list<Case>{
           {"a<svg><g><path/><text>t</text><style>x</style><![CDATA[<c>]]></g></svg><a href=x>b</a>",
            "a,svg(svg g(svg path,svg text(t),svg style,<c>)),a[href=x](b)"},
           {"<svg><foreignObject><section>x</section></foreignObject></svg><section>y</section>",
            "svg(svg foreignobject(section(x))),section(y)"},
           {"<svg><circle><p>out<section>y", "svg(svg circle),p(out),section(y)"},
           {"<math><mi>x</mi><mo>=</mo></math>", "math(math mi(x),math mo(=))"},
       })
    EXPECT_EQ(bodyOf(test.page), test.body) << test.page;
}

TEST(Document, DropsElementsBeyondTheDeepestLevelAndKeepsTheirText) {
  for (const std::string_view tag : {"<div>", "<x-y>", "<table><tr><td>", "<ul><li>", "<span>"}) {
    const Document page = Document::parse(repeated(tag, 20'000) + "deep");
    EXPECT_LE(depthOf(page.root()), Document::maximumDepth) << tag;
    EXPECT_GE(depthOf(page.root()), Document::maximumDepth - 8) << tag;
  }
  const std::string page = repeated("<div>", 1000) + "deep" + repeated("</div>", 1000) + "<p>after";
  EXPECT_TRUE(bodyOf(page).ends_with(",p(after)")) << "the ends of dropped elements close nothing else";
  EXPECT_NE(bodyOf(page).find("(deep)"), std::string::npos);
}

// The account of open elements may not lose any: each of these nests elements by rules of its own, and without end.
TEST(Document, BoundsWhatMisnestedTagsOpen) {
  for (const std::string_view piece :
       {"<b><div></b>", "<i><b><u><div></b></i>", "<form><div></form>", "<a><div>", "<div><select></div><input>",
        "<p><table><tr><td></p>", "<svg><title><b><div>", "<b><i><u><s><tt><div></b><span></i>", "<ruby><rtc><span>",
        "<li><div><span>", "<table><b><tr><td></b><a>", "<button><div></button><h1>", "<object><b></object>",
        "<b><table><td><i>"}) {
    const Document page = Document::parse(repeated(piece, 3000));
    EXPECT_LE(depthOf(page.root()), Document::maximumDepth) << piece;
  }
}

TEST(Document, StopsRepeatingFormattingThatIsNeverClosed) {
  const auto countOf = [](const Document& page, std::string_view name) {
    const auto count = [&](const auto& self, const Node& node) -> int {
      int found = node.name() == name ? 1 : 0;
      for (const Node child : node.children())
        found += self(self, child);
      return found;
    };
    return count(count, page.root());
  };
  // As browsers repeat it, as long as that is affordable.
  EXPECT_EQ(countOf(Document::parse("<b><p>1</p></b><p><i>" + repeated("<p>2", 10)), "i"), 11);
  const Document page = Document::parse("<p><b><i><u><s><small><em>" + repeated("<p>text", 30'000));
  EXPECT_EQ(countOf(page, "p"), 30'001);
  EXPECT_LT(countOf(page, "b"), 20'000);
}

TEST(Document, BoundsAttributes) {
  std::string tag = "<p";
  for (int count = 0; count < 10'000; ++count)
    tag += " a" + std::to_string(count) + "='>'";
  const Document page = Document::parse(tag + ">text");
  const std::string body = outline(page.root());
  EXPECT_NE(body.find("[a63=>](text)"), std::string::npos);
  EXPECT_EQ(body.find("[a64"), std::string::npos);
  // Each further "body" would add its attributes to the first one.
  EXPECT_EQ(outline(Document::parse("<html c=1><body a=1><body b=1><html d=1>x").root()),
            "html[c=1](head,body[a=1](x))");
}

TEST(Document, RefusesWhatIsTooLarge) {
  const auto refusal = [](std::string_view page) {
    return testsupport::failureText([&] { return Document::parse(page); });
  };
  EXPECT_EQ(refusal(std::string_view("nobody reads this far", Document::maximumLength + 1)),
            "The page has more than 134217728 bytes: it is too large to be read.");
  std::string tags;
  for (std::size_t parts = 0; parts <= Document::maximumMarkup; parts += 64) {
    tags += "<p";
    for (int attribute = 0; attribute < 63; ++attribute)
      tags += " a";
    tags += '>';
  }
  EXPECT_EQ(refusal(tags), "The page has more than 4000000 tags and attributes: it is too large to be read.");
}

} // namespace
} // namespace tabwright::html
