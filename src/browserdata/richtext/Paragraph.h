#pragma once

#include "browserdata/richtext/CharacterFormat.h"
#include "browserdata/richtext/LinkTable.h"
#include "browserdata/richtext/ParagraphFormat.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::browserdata {

/// The treatment of white space in a page's text, as CSS Text has it for "normal" and "pre".
enum class WhiteSpace : std::uint8_t { collapsed, kept };

/// The paragraph that is being collected: its text, in runs of one format.
class Paragraph {
public:
  ParagraphFormat format;

  /// Adds UTF-8. Collapsed white space is one blank, also across calls, and none at the start and end of lines.
  void addText(std::string_view text, CharacterFormat format, WhiteSpace whiteSpace);

  /// One at the very end only ends the last line, as in browsers.
  void addLineBreak(CharacterFormat format);

  /// Adds a character that only steers the direction of text. It is not written: the runs' directions say the same.
  void addDirectionMark(char16_t mark);
  /// Adds one that overrides directions, and is written.
  void addDirectionOverride(char16_t mark, CharacterFormat format);

  /// True when there is anything that a browser shows, a line break included.
  [[nodiscard]] bool isShown() const { return isShown_; }

  /// Drops all text.
  void clear();

  /// Appends the paragraph, but for its end, and empties this.
  void write(std::string& out, LinkTable& links, const std::optional<ListMarker>& marker);

private:
  enum class Tail { lineStart, blank, lineBreak, text };
  struct Segment {
    std::size_t end;
    CharacterFormat format;
    bool isWritten;
  };

  void closeSegment(CharacterFormat format, bool isWritten);
  void addBlank();
  void dropTail();
  void writeRuns(std::string& out, LinkTable& links, const TextDirections& directions) const;

  std::u16string text_;
  std::vector<Segment> segments_;
  Tail tail_ = Tail::lineStart;
  std::size_t tailAt_ = 0; // of the blank or line break that may have to go
  bool isShown_ = false;
};

} // namespace tabwright::browserdata
