// Parse, clean, walk, tidy, in this order. The walk's rules are in markdown/. Tidying comes last and knows no rule: it
// sees lines only, so white space that the page put before a line goes whatever element it came from, and the blank
// lines that neighbouring rules both asked for become one gap.
#include "browserdata/HTMLToMarkdown.h"

#include "browserdata/CustomSoupWhitelist.h"
#include "browserdata/PageFragment.h"
#include "browserdata/markdown/MarkdownWalk.h"
#include "html/Cleaner.h"
#include "html/ParseFault.h"
#include "platform/FailureTable.h"

#include <fmt/core.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <string_view>

namespace tabwright::browserdata {

namespace {

constexpr platform::FailureTable<HTMLToMarkdownError, 2> failures{
    "HTMLToMarkdownError",
    {
        {HTMLToMarkdownError::unexpectedNode, "unexpectedNode",
         "A table of the page holds an element “{}” where a row or a cell belongs"},
        {HTMLToMarkdownError::unprocessableHTML, "unprocessableHTML",
         "The HTML can't be converted: it is too long, or its Markdown would be out of all proportion to it"},
    }};

html::Document parse(std::string_view text) {
  try {
    return parseFragment(text);
  } catch (const html::ParseFault&) {
    throw platform::failure(HTMLToMarkdownError::unprocessableHTML);
  }
}

/// A line without the white space it begins with, up to a tab: tabs are the levels of lists. The first one becomes four
/// blanks.
void appendTidied(std::string& out, std::string_view line) {
  int32_t begin = 0;
  const auto length = static_cast<int32_t>(line.size());
  while (begin < length && line[static_cast<std::size_t>(begin)] != '\t') {
    int32_t next = begin;
    UChar32 character = 0;
    U8_NEXT(line.data(), next, length, character);
    if (character < 0 || !u_isUWhiteSpace(character))
      break;
    begin = next;
  }
  line.remove_prefix(static_cast<std::size_t>(begin));
  if (line.starts_with('\t')) {
    out += "    ";
    line.remove_prefix(1);
  }
  out += line;
}

/// Three line feeds or more become a paragraph separator.
std::string withoutWideGaps(std::string_view text, std::string_view paragraphSeparator) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const std::size_t gap = std::min(text.find("\n\n\n"), text.size());
    out += text.substr(0, gap);
    text.remove_prefix(gap);
    if (text.empty())
      break;
    out += paragraphSeparator;
    text.remove_prefix(std::min(text.find_first_not_of('\n'), text.size()));
  }
  return out;
}

std::string tidied(std::string_view text, std::string_view lineSeparator, std::string_view paragraphSeparator) {
  std::string lines;
  lines.reserve(text.size());
  while (true) {
    // Without a separator the text is one line.
    const std::size_t end = lineSeparator.empty() ? std::string_view::npos : text.find(lineSeparator);
    appendTidied(lines, text.substr(0, end));
    if (end == std::string_view::npos)
      break;
    lines += lineSeparator;
    text.remove_prefix(end + lineSeparator.size());
  }
  return withoutWideGaps(lines, paragraphSeparator);
}

} // namespace

std::string errorDescription(HTMLToMarkdownError error, const std::string& detail) {
  return fmt::format(fmt::runtime(failures[error].sentence), detail);
}

platform::FailureIdentity identity(HTMLToMarkdownError error) {
  return failures.identity(error);
}

std::string HTMLToMarkdown::convert() const {
  // The walk's pieces are bounded, as nested quotes and wide tables write more than the page holds.
  constexpr std::size_t roomAnyway = std::size_t{16} << 20;
  constexpr std::size_t roomPerByte = 64;
  MarkdownPieces pieces(roomAnyway + roomPerByte * html.size());
  {
    // In a scope of its own: the tree goes before the text is made, so the two are never held together.
    const html::Document clean = html::Cleaner({}, CustomSoupWhitelist::list()).clean(parse(html));
    MarkdownWalk(pieces, lineSeparator, paragraphSeparator).add(clean.root(), {});
  }
  return tidied(pieces.take(0), lineSeparator, paragraphSeparator);
}

} // namespace tabwright::browserdata
