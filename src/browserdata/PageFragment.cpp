#include "browserdata/PageFragment.h"

#include "platform/AsciiCase.h"

#include <algorithm>
#include <array>
#include <string>

namespace tabwright::browserdata {

namespace {

constexpr std::string_view blanks = " \t\r\n\f";

/// White space and comments, among which is what browsers put around a selection.
std::string_view withoutLeadingComments(std::string_view html) {
  while (true) {
    html.remove_prefix(std::min(html.find_first_not_of(blanks), html.size()));
    const std::size_t end = html.starts_with("<!--") ? html.find("-->") : std::string_view::npos;
    if (end == std::string_view::npos)
      return html;
    html.remove_prefix(end + 3);
  }
}

bool beginsInsideTable(std::string_view html) {
  constexpr std::array<std::string_view, 8> parts{"tr", "td", "th", "tbody", "thead", "tfoot", "caption", "colgroup"};
  html = withoutLeadingComments(html);
  if (!html.starts_with('<'))
    return false;
  const std::string_view name = html.substr(1, html.find_first_of(" \t\r\n\f/>") - 1);
  return std::ranges::any_of(parts, [&](std::string_view part) { return platform::equalIgnoringCase(part, name); });
}

} // namespace

html::Document parseFragment(std::string_view html) {
  if (beginsInsideTable(html))
    // No end tag is needed: the end of the text closes the table.
    return html::Document::parse("<table>" + std::string(html));
  return html::Document::parse(html);
}

} // namespace tabwright::browserdata
