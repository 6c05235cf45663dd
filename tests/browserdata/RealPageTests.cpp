#include "browserdata/CustomSoupWhitelist.h"
#include "browserdata/HTMLToMarkdown.h"
#include "html/Cleaner.h"
#include "markdown/Document.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Documentation that others wrote, as Debian's packages install it: what is read on a page is read in its Markdown, in
/// the same order, when cmark-gfm renders it again. Compared are the letters, since Markdown has its own idea of white
/// space and marks, and takes a number with a dot for the mark of a list's item. Pages that speak of Markdown's links
/// are left aside: such marks are not escaped.
namespace tabwright::browserdata {
namespace {

// Each of them comes with a package that building or testing needs anyway.
const std::vector<std::filesystem::path> folders = {"/usr/share/doc/fish", "/usr/share/doc/ninja-build",
                                                    "/usr/share/doc/ccache", "/usr/share/doc/groff-base/html"};

std::vector<std::filesystem::path> realPages() {
  std::vector<std::filesystem::path> pages;
  for (const std::filesystem::path& folder : folders)
    if (std::filesystem::exists(folder))
      for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".html" && entry.is_regular_file())
          pages.push_back(entry.path());
  std::ranges::sort(pages);
  return pages;
}

void appendLetters(std::string& letters, std::string_view text) {
  for (int32_t place = 0; place < static_cast<int32_t>(text.size());) {
    const int32_t begin = place;
    UChar32 character = 0;
    U8_NEXT(text.data(), place, static_cast<int32_t>(text.size()), character);
    if (character >= 0 && u_isalpha(character))
      letters += text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(place - begin));
  }
}

// The text that a clean page shows, but for two things that the rules leave out: text between a list's items, captions.
void appendVisible(std::string& letters, const html::Node& node) {
  static const std::set<std::string_view> rows = {"thead", "tbody", "tfoot", "tr"};
  if (node.isText())
    return appendLetters(letters, node.text());
  if (node.name() == "aside")
    letters += "Aside";
  for (const html::Node child : node.children())
    if ((node.name() != "ul" && node.name() != "ol") || child.name() == "li")
      if (node.name() != "table" || rows.contains(child.name()))
        appendVisible(letters, child);
  if (const auto title = node.attribute("title"); node.name() == "abbr" && title)
    appendLetters(letters, *title);
}

void appendRendered(std::string& letters, const markdown::Node& node) {
  if (node.kind == markdown::Node::Kind::image)
    return;
  const bool isLineBreak = node.kind == markdown::Node::Kind::html && node.text == "<br>";
  if (!isLineBreak)
    appendLetters(letters, node.text);
  for (const markdown::Node& child : node.children)
    appendRendered(letters, child);
}

TEST(RealPages, AreReadInTheirMarkdownAsTheyAreReadInABrowser) {
  const std::vector<std::filesystem::path> pages = realPages();
  ASSERT_GE(pages.size(), 50U)
      << "the documentation of the packages fish, ninja-build, ccache and groff-base is missing";
  for (const std::filesystem::path& page : pages) {
    const std::string html = testsupport::ScratchFolder::content(page);
    const html::Document clean = html::Cleaner({}, CustomSoupWhitelist::list()).clean(html::Document::parse(html));
    std::string visible;
    appendVisible(visible, clean.root());
    std::string rendered;
    appendRendered(rendered, markdown::parse(HTMLToMarkdown{html}.convert()).root());
    if (visible == rendered || html.find("](") != std::string::npos)
      continue;
    const auto [expected, actual] = std::ranges::mismatch(visible, rendered);
    const auto from = std::max<std::ptrdiff_t>(0, expected - visible.begin() - 40);
    ADD_FAILURE() << page << ": expected …" << visible.substr(static_cast<std::size_t>(from), 120) << "… but there is …"
                  << rendered.substr(static_cast<std::size_t>(std::min<std::ptrdiff_t>(from, std::ssize(rendered))),
                                     120);
  }
}

} // namespace
} // namespace tabwright::browserdata
