// Parse, choose the part, walk. The walk's rules are in pagetext/.
#include "browserdata/PageText.h"

#include "browserdata/HTMLToMarkdown.h"
#include "browserdata/PageFragment.h"
#include "browserdata/pagetext/MainContent.h"
#include "browserdata/pagetext/PageAddress.h"
#include "browserdata/pagetext/PageTextWalk.h"
#include "html/ParseFault.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tabwright::browserdata {

namespace {

constexpr std::size_t longestBase = 8'192;

html::Document parsedPage(std::string_view text) {
  try {
    return parseFragment(text);
  } catch (const html::ParseFault&) {
    throw platform::failure(HTMLToMarkdownError::unprocessableHTML);
  }
}

// The first of the page's own counts.
std::optional<std::string_view> ownBase(const html::Node& root) {
  for (const html::Node head : root.children())
    if (head.name() == "head")
      for (const html::Node child : head.children())
        if (child.name() == "base")
          if (const auto address = child.attribute("href"))
            return address;
  return std::nullopt;
}

} // namespace

PageText::Result PageText::convert() const {
  // Marks in front of lines, and addresses that are absolute now, write more than the page holds.
  constexpr std::size_t roomAnyway = std::size_t{16} << 20;
  constexpr std::size_t roomPerByte = 64;
  const html::Document page = parsedPage(html);
  const std::string given = absoluteAddress(base, {});
  std::string pageBase = given;
  if (const auto own = ownBase(page.root()))
    pageBase = absoluteAddress(*own, given);
  if (pageBase.size() > longestBase)
    pageBase.clear();

  std::optional<html::Node> chosen;
  if (part == Part::mainContent)
    chosen = mainContent(page.root());
  PageTextWalk walk(form, chosen ? WalkSkips::boilerplate : WalkSkips::nothing, std::move(pageBase),
                    roomAnyway + roomPerByte * html.size());
  walk.add(chosen.value_or(page.root()));
  return {walk.take(), chosen ? Part::mainContent : Part::whole};
}

} // namespace tabwright::browserdata
