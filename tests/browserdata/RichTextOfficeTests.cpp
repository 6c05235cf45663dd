// The other end of the road: LibreOffice reads what we write, and what it writes of that says the same.
#include "browserdata/RichText.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::browserdata {
namespace {

constexpr std::string_view sample = R"(<head><title>No</title></head>
<h1>Main <em>heading</em></h1><h3>Minor</h3>
<p>Plain <b>strongly</b> <i>slanted</i> <b><i>twice</i></b> <u>under</u> <s>struck</s> H<sub>low</sub> <sup>high</sup>
 <code>fixed{}\</code> <a href="https://example.org/a b?x=1&amp;y={2}">linked</a> 😀 naïve</p>
<ul><li>apple</li><li>pear<ol start="3"><li>third<ul><li>deep</li></ul></li></ol></li></ul>
<ol><li>one</li></ol><ol type="a"><li value="5">letter</li></ol>
<blockquote>quoted</blockquote>
<pre>kept  white
	space</pre>
<table><tr><th>Fruit</th><th>Price</th></tr><tr><td rowspan="2">Kiwi</td><td>1.20</td></tr><tr><td>2.40</td></tr>
<tr><td colspan="2">wide<table><tr><td>inner</td></tr></table></td></tr></table>
<p dir="rtl">שלום <b>עולם</b></p><p>last</p>)";

// A text with the elements around it, outermost first.
struct PlacedText {
  std::string text;
  std::vector<html::Node> around;
};

std::string trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(' ');
  return start == std::string_view::npos ? "" : std::string(text.substr(start, text.find_last_not_of(' ') - start + 1));
}

void collect(html::Node node, std::vector<html::Node> around, std::vector<PlacedText>& texts) {
  if (node.isText()) {
    if (std::string text = trimmed(node.text()); !text.empty())
      texts.push_back({std::move(text), std::move(around)});
    return;
  }
  if (node.name() == "head")
    return;
  around.push_back(node);
  for (const html::Node child : node.children())
    collect(child, around, texts);
}

int countAround(const PlacedText& text, std::string_view name) {
  return static_cast<int>(
      std::ranges::count_if(text.around, [&](html::Node element) { return element.name() == name; }));
}

std::string attributeAround(const PlacedText& text, std::string_view name, std::string_view attribute) {
  std::string innermost;
  for (const html::Node element : text.around) {
    if (element.name() == name)
      innermost = element.attribute(attribute).value_or("");
  }
  return innermost;
}

TEST(RichTextOffice, LibreOfficeReadsTheSameTextAndStyles) {
  ASSERT_EQ(std::system("command -v soffice >/dev/null"), 0)
      << "there is no soffice: install the package libreoffice-writer-nogui";
  const testsupport::ScratchFolder scratch;
  const std::string folder = scratch.path().string();
  scratch.write(scratch / "sample.rtf", richText(html::Document::parse(sample)));
  // `timeout` ends its whole process group.
  const std::string command = "cd " + folder + " && timeout -k 5 100 soffice -env:UserInstallation=file://" + folder +
                              "/profile --headless --convert-to html sample.rtf >log 2>&1 </dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0);
  const std::string page = scratch.content(scratch / "sample.html");
  const auto document = html::Document::parse(page);
  std::vector<PlacedText> texts;
  collect(document.root(), {}, texts);

  std::string all;
  for (const PlacedText& placed : texts)
    all += placed.text + " ";
  EXPECT_EQ(all, "Main heading Minor Plain strongly slanted twice under struck H low high fixed{}\\ linked 😀 naïve "
                 "apple pear third deep one letter quoted kept white space Fruit Price Kiwi 1.20 2.40 wide inner "
                 "שלום עולם last ");

  const auto find = [&](std::string_view text) -> PlacedText {
    for (const PlacedText& placed : texts) {
      if (placed.text == text)
        return placed;
    }
    ADD_FAILURE() << "no text " << text << " in\n" << page;
    return {};
  };
  struct Expectation {
    std::string_view text;
    std::string_view element;
    int count;
  };
  for (const auto& [text, element, count] : std::vector<Expectation>{
           {"heading", "h1", 1},  {"heading", "i", 1},     {"Minor", "h3", 1},    {"strongly", "b", 1},
           {"strongly", "i", 0},  {"slanted", "i", 1},     {"twice", "b", 1},     {"twice", "i", 1},
           {"under", "u", 1},     {"struck", "strike", 1}, {"low", "sub", 1},     {"high", "sup", 1},
           {"linked", "a", 1},    {"apple", "li", 1},      {"apple", "ul", 1},    {"third", "ol", 2},
           {"deep", "ul", 3},     {"one", "ol", 1},        {"letter", "ol", 1},   {"Fruit", "b", 1},
           {"Fruit", "table", 1}, {"2.40", "td", 1},       {"inner", "table", 2}, {"inner", "td", 2},
           {"last", "table", 0}})
    EXPECT_EQ(countAround(find(text), element), count) << text << " in " << element;

  EXPECT_EQ(attributeAround(find("linked"), "a", "href"), "https://example.org/a%20b?x=1&y=%7B2%7D");
  EXPECT_EQ(attributeAround(find("third"), "ol", "start"), "3");
  EXPECT_EQ(attributeAround(find("one"), "ol", "start"), "");
  EXPECT_EQ(attributeAround(find("letter"), "ol", "type") + attributeAround(find("letter"), "ol", "start"), "a5");
  EXPECT_EQ(attributeAround(find("Kiwi"), "td", "rowspan"), "2");
  EXPECT_EQ(attributeAround(find("wide"), "td", "colspan"), "2");
  EXPECT_EQ(attributeAround(find("שלום"), "p", "dir"), "rtl");
  EXPECT_EQ(countAround(find("עולם"), "b"), 1);
  EXPECT_TRUE(attributeAround(find("fixed{}\\"), "font", "face").starts_with("Courier New"));
  EXPECT_NE(attributeAround(find("quoted"), "p", "style").find("margin-left: 0.33in"), std::string::npos);
}

} // namespace
} // namespace tabwright::browserdata
