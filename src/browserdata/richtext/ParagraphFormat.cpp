// Each paragraph states its whole format, after \pard\plain: readers don't take the properties of a style that is
// named. Headings name theirs nevertheless, so that word processors list them.
#include "browserdata/richtext/ParagraphFormat.h"

#include "browserdata/richtext/DocumentFrame.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>

namespace tabwright::browserdata {

void ParagraphFormat::indentFurther(bool both) {
  indent = static_cast<std::uint8_t>(std::min(indent + 1, maximumIndent));
  if (both && rightIndent < 2) // lines must keep a width
    ++rightIndent;
}

void appendParagraphStart(std::string& out, const ParagraphFormat& format, const std::optional<ListMarker>& marker,
                          bool isRightToLeft) {
  auto end = std::back_inserter(out);
  out += "\\pard\\plain";
  if (format.tableDepth > 0)
    fmt::format_to(end, "\\intbl\\itap{}", format.tableDepth);
  if (isRightToLeft)
    out += "\\rtlpar";
  if (format.isCentred)
    out += "\\qc";
  else if (isRightToLeft)
    out += "\\qr"; // sides are those of the paper
  if (marker)
    // The first line stands out to the left by the room of the mark.
    fmt::format_to(end, "\\ls{}\\ilvl{}\\fi-360", marker->list, marker->level);
  if (format.indent > 0) {
    const int twips = format.indent * ParagraphFormat::indentStep;
    if (!isRightToLeft)
      fmt::format_to(end, "\\li{}", twips);
    fmt::format_to(end, "\\lin{}", twips);
  }
  if (format.rightIndent > 0) {
    const int twips = format.rightIndent * ParagraphFormat::indentStep;
    if (!isRightToLeft)
      fmt::format_to(end, "\\ri{}", twips);
    fmt::format_to(end, "\\rin{}", twips);
  }
  if (format.heading > 0)
    fmt::format_to(end, "\\s{}{}", format.heading, headingWords(format.heading));
  else if (format.hasRoomAbove)
    fmt::format_to(end, "\\sb{}", ParagraphFormat::room);
  out += ' ';
  if (marker)
    fmt::format_to(end, "{{\\listtext {}\\tab}}", marker->text);
}

} // namespace tabwright::browserdata
