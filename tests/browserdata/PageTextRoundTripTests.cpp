// Text, links and code of a page come back when its Markdown is read again by cmark-gfm: of pages made by chance out of
// all that could be taken for markup, and of documentation that others wrote. The text is compared without its white
// space, of which Markdown has its own idea, and links without the percent signs that their escapes may differ in.
#include "browserdata/PageText.h"
#include "browserdata/pagetext/CodeBlock.h"
#include "browserdata/pagetext/ElementRules.h"
#include "browserdata/pagetext/PageAddress.h"
#include "html/Document.h"
#include "markdown/Document.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::browserdata {
namespace {

constexpr const char* base = "https://x.test/a/b.html";

void appendVisible(std::string& letters, std::string_view text) {
  for (int32_t at = 0; at < static_cast<int32_t>(text.size());) {
    const int32_t begin = at;
    UChar32 character = 0;
    U8_NEXT(text.data(), at, static_cast<int32_t>(text.size()), character);
    if (character < 0 || !u_isUWhiteSpace(character))
      letters += text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(at - begin));
  }
}

std::string percentDecoded(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at < text.size(); ++at)
    if (text[at] == '%' && at + 2 < text.size() && std::isxdigit(text[at + 1]) != 0 &&
        std::isxdigit(text[at + 2]) != 0) {
      out += static_cast<char>(std::stoi(std::string(text.substr(at + 1, 2)), nullptr, 16));
      at += 2;
    } else {
      out += text[at];
    }
  return out;
}

// An address in a text, which GitHub links though the page doesn't. A link of the page whose text is its address counts
// neither here nor there.
bool isSaidByText(std::string_view address, std::string_view text) {
  return (text.contains("://") || text.starts_with("www.") || text.contains('@')) && address.ends_with(text);
}

struct Content {
  std::string text;
  std::string code;
  std::vector<std::string> codeBlocks;
  std::vector<std::pair<std::string, std::string>> links; ///< addresses with texts, neighbours of one address together

  void addToLink(const std::string& address, std::string_view piece) {
    std::string visible;
    appendVisible(visible, piece);
    if (visible.empty())
      return;
    if (links.empty() || links.back().first != address)
      links.emplace_back(address, "");
    links.back().second += visible;
  }
};

// The page as it is shown, by the tree alone.
class PageReading {
public:
  Content content;

  void add(const html::Node& node, const std::string& link = {}, bool isCode = false, bool isInLine = false) {
    if (node.isText())
      return addText(node.text(), link, isCode);
    const ElementRule rule = ruleOf(node);
    if (rule == ElementRule::leftOut || isHidden(node))
      return;
    if (rule == ElementRule::preformatted) {
      const CodeBlock block = CodeBlock::of(node);
      std::string visible;
      appendVisible(visible, block.text);
      content.text += visible;
      content.code += visible;
      if (isInLine && !link.empty())
        content.addToLink(link, block.text);
      if (!isInLine && !visible.empty())
        content.codeBlocks.push_back(block.text);
      return;
    }
    std::string inside = link;
    if (rule == ElementRule::link && link.empty()) {
      const std::string_view href = node.attribute("href").value_or("");
      if (href.starts_with('#') && (allText(node) == "¶"))
        return;
      if (const std::string address = absoluteAddress(href, base); !leadsNowhere(address) && node.attribute("href"))
        inside = isSaidByText(address, allText(node)) ? std::string() : percentDecoded(address);
      if (!inside.empty() && !showsAnything(node))
        return addText(node.attribute("aria-label").value_or(node.attribute("title").value_or("")), inside, isCode);
    }
    if (rule == ElementRule::image)
      return addText(node.attribute("alt").value_or(""), inside, false);
    if (rule == ElementRule::quotation)
      addText("“", inside, isCode);
    for (const html::Node child : node.children())
      add(child, inside, isCode || rule == ElementRule::code,
          isInLine || rule == ElementRule::heading || node.name() == "td" || node.name() == "th");
    if (rule == ElementRule::quotation)
      addText("”", inside, isCode);
  }

private:
  static std::string allText(const html::Node& node) {
    std::string text(node.text());
    for (const html::Node child : node.children())
      text += allText(child);
    return text;
  }

  void addText(std::string_view text, const std::string& link, bool isCode) {
    appendVisible(content.text, text);
    if (isCode)
      appendVisible(content.code, text);
    if (!link.empty())
      content.addToLink(link, text);
  }
};

// The Markdown's content, read by GitHub's rules.
class MarkdownReading {
public:
  Content content;

  void add(const markdown::Node& node, std::string link = {}) {
    using Kind = markdown::Node::Kind;
    if (node.kind == Kind::html && (node.text == "<br>" || node.text.contains("<su") || node.text.contains("</su")))
      return;
    if (node.kind == Kind::link && !(node.children.size() == 1 && isSaidByText(node.address, node.children[0].text)))
      link = percentDecoded(node.address);
    appendVisible(content.text, node.text);
    if (node.kind == Kind::code || node.kind == Kind::codeBlock)
      appendVisible(content.code, node.text);
    if (node.kind == Kind::codeBlock)
      content.codeBlocks.push_back(node.text.substr(0, node.text.size() - 1));
    if (!link.empty())
      content.addToLink(link, node.text);
    for (const markdown::Node& child : node.children)
      add(child, link);
  }
};

// The first difference, with what is around it; empty when there is none.
std::string difference(std::string_view expected, std::string_view actual) {
  if (expected == actual)
    return {};
  const auto [one, other] = std::ranges::mismatch(expected, actual);
  const auto from = static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, one - expected.begin() - 40));
  return "expected …" + std::string(expected.substr(from, 100)) + "… but there is …" +
         std::string(actual.substr(std::min(from, actual.size()), 100)) + "…";
}

std::string lossOf(const std::string& html) {
  PageReading page;
  page.add(html::Document::parse(html).root());
  MarkdownReading text;
  text.add(markdown::parse(PageText{.html = html, .base = base}.convert().text).root());
  for (const auto& [expected, actual] :
       {std::pair(page.content.text, text.content.text), std::pair(page.content.code, text.content.code)})
    if (std::string loss = difference(expected, actual); !loss.empty())
      return loss;
  if (page.content.codeBlocks != text.content.codeBlocks)
    return "blocks of code differ";
  const auto [one, other] = std::ranges::mismatch(page.content.links, text.content.links);
  if (one != page.content.links.end() || other != text.content.links.end())
    return "links differ: expected " +
           (one == page.content.links.end() ? "none" : one->first + " (" + one->second + ")") + " but there is " +
           (other == text.content.links.end() ? "none" : other->first + " (" + other->second + ")");
  return {};
}

// Pages made by chance; a seed always makes the same one.
class ChancePage {
public:
  explicit ChancePage(unsigned seed) : random_(seed) {}

  std::string made() {
    for (int count = 1 + below(5); count > 0; --count)
      block(0);
    return std::move(html_);
  }

private:
  int below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }

  void word() {
    static constexpr auto words = std::to_array<std::string_view>({"word",
                                                                   "snake_case",
                                                                   "a",
                                                                   "B2",
                                                                   "日本語",
                                                                   "“quoted”",
                                                                   "€5",
                                                                   "1.",
                                                                   "23)",
                                                                   "-",
                                                                   "+",
                                                                   "*",
                                                                   "**",
                                                                   "***",
                                                                   "_",
                                                                   "__",
                                                                   "`",
                                                                   "``",
                                                                   "```",
                                                                   "~",
                                                                   "~~",
                                                                   "~~~",
                                                                   "#",
                                                                   "##",
                                                                   "&gt;",
                                                                   "&lt;b&gt;",
                                                                   "&lt;",
                                                                   "&amp;",
                                                                   "&amp;amp;",
                                                                   "&amp;#42;",
                                                                   "|",
                                                                   "||",
                                                                   "\\",
                                                                   "\\*",
                                                                   "\\|",
                                                                   "!",
                                                                   "![",
                                                                   "[",
                                                                   "]",
                                                                   "](x)",
                                                                   "[a](b)",
                                                                   "[x]",
                                                                   "[ ]",
                                                                   "[a]:",
                                                                   "---",
                                                                   "===",
                                                                   "- - -",
                                                                   "--- |",
                                                                   ":-:",
                                                                   "http://y.test/p_q_r",
                                                                   "www.y.test/*x*",
                                                                   "https://y.test/(a)",
                                                                   "me@y.test",
                                                                   "(",
                                                                   ")",
                                                                   "{",
                                                                   "$x$",
                                                                   "&nbsp;",
                                                                   "&#x200b;",
                                                                   "e\u0301",
                                                                   "😀",
                                                                   "&lt;!--",
                                                                   "&lt;/p&gt;",
                                                                   ":",
                                                                   ".",
                                                                   "&quot;",
                                                                   "'",
                                                                   "^",
                                                                   "="});
    html_ += words[static_cast<std::size_t>(below(static_cast<int>(words.size())))];
  }

  void text() {
    for (int count = 1 + below(4); count > 0; --count) {
      word();
      if (below(2) == 0)
        html_ += ' ';
    }
  }

  void element(const char* name, auto content) {
    html_ += std::string("<") + name + ">";
    content();
    const std::string_view whole(name);
    html_ += "</" + std::string(whole.substr(0, whole.find(' '))) + ">";
  }

  void inlineContent(int depth) {
    for (int count = 1 + below(3); count > 0; --count) {
      const auto inside = [&] { depth < 4 ? inlineContent(depth + 1) : text(); };
      switch (below(14)) {
      case 0:
        element("b", inside);
        break;
      case 1:
        element("em", inside);
        break;
      case 2:
        element("del", inside);
        break;
      case 3:
        element("a href='../p(1)?q=1&amp;copy;=2|3'", inside);
        break;
      case 4:
        element("a href='http://y.test/`_*x*&quot;\\'", inside);
        break;
      case 5:
        // Marks of cells can't stand behind a backslash in code: such code comes back as text.
        element("code", [&] { html_ += below(2) == 0 ? "a`b" : below(2) == 0 ? "``x|" : "x* <i>y</i> "; });
        break;
      case 6:
        html_ += "<br>";
        break;
      case 7:
        html_ += "<img src=i.png alt='a [b] *c* `d` \\'>";
        break;
      case 8:
        element("sup", inside);
        break;
      default:
        text();
      }
    }
  }

  void blocks(int depth) {
    for (int count = 1 + below(2); count > 0; --count)
      block(depth + 1);
  }

  void block(int depth) {
    int kind = below(depth < 3 ? 12 : 5);
    if (kind == 1 && tables_ > 0)
      kind = 2; // whether code has its lines depends on what the table is for
    switch (kind) {
    case 0:
      return element("h2", [&] { inlineContent(0); });
    case 1:
      return element("pre", [&] { html_ += below(2) == 0 ? "\n  a\n\n````\n\t* b\n" : "~~~\n[x](y) \\ &lt;b&gt;"; });
    case 2:
      return inlineContent(0);
    case 5:
      return element(below(2) == 0 ? "blockquote" : "div", [&] { blocks(depth); });
    case 6:
      return element(below(2) == 0   ? "ul"
                     : below(2) == 0 ? "ol"
                                     : "ol start=7",
                     [&] {
                       for (int count = below(4); count > 0; --count)
                         element("li", [&] { below(3) == 0 ? blocks(depth) : inlineContent(0); });
                     });
    case 7:
      ++tables_;
      element("table", [&] {
        for (int rows = 1 + below(3); rows > 0; --rows)
          element("tr", [&] {
            for (int cells = 1 + below(3); cells > 0; --cells)
              element(below(3) == 0   ? "th"
                      : below(2) == 0 ? "td colspan=2"
                                      : "td rowspan=2",
                      [&] { below(4) == 0 ? blocks(depth) : inlineContent(0); });
          });
      });
      --tables_;
      return;
    case 8:
      return element("dl", [&] {
        element("dt", [&] { inlineContent(0); });
        element("dd", [&] { blocks(depth); });
      });
    case 9:
      return element("a href=over/blocks", [&] { blocks(depth); });
    case 10:
      html_ += "<hr>";
      return;
    default:
      return element("p", [&] { inlineContent(0); });
    }
  }

  std::mt19937 random_;
  int tables_ = 0; ///< that are open
  std::string html_;
};

TEST(PageTextRoundTrip, KeepsTextLinksAndCodeOfPagesMadeByChance) {
  int failures = 0;
  for (unsigned seed = 1; seed <= 2'000 && failures < 5; ++seed) {
    const std::string html = ChancePage(seed).made();
    const std::string loss = lossOf(html);
    failures += loss.empty() ? 0 : 1;
    EXPECT_EQ(loss, "") << "seed " << seed << "\n"
                        << html << "\n"
                        << PageText{.html = html, .base = base}.convert().text;
  }
}

TEST(PageTextRoundTrip, KeepsTextLinksAndCodeOfRealPages) {
  std::vector<std::filesystem::path> pages;
  for (const char* folder :
       {"/usr/share/doc/fish", "/usr/share/doc/ninja-build", "/usr/share/doc/ccache", "/usr/share/doc/groff-base/html"})
    if (std::filesystem::exists(folder))
      for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".html" && entry.is_regular_file())
          pages.push_back(entry.path());
  ASSERT_GE(pages.size(), 50U) << "the documentation of fish, ninja-build, ccache and groff-base is missing";
  for (const std::filesystem::path& page : pages)
    EXPECT_EQ(lossOf(testsupport::ScratchFolder::content(page)), "") << page;
}

} // namespace
} // namespace tabwright::browserdata
