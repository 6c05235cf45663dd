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
  /// The end of the line so far, which decides about the white space that follows.
  enum class Tail { lineStart, blank, lineBreak, text };
  /// A stretch of the text in one format, up to `end` in UTF-16 units.
  struct Segment {
    std::size_t end;
    CharacterFormat format;
    bool isWritten;
  };

  /// Gives what was added since the last one its format.
  void closeSegment(CharacterFormat format, bool isWritten);
  void addBlank();
  /// Takes away the blank or line break that the line ends with.
  void dropTail();
  void writeRuns(std::string& out, LinkTable& links, const TextDirections& directions) const;

  /// In UTF-16, as the bidirectional algorithm and Rich Text Format take it.
  std::u16string text_;
  std::vector<Segment> segments_;
  Tail tail_ = Tail::lineStart;
  std::size_t tailAt_ = 0; // of the blank or line break that may have to go
  /// Anything but direction marks and collapsed blanks was added.
  bool isShown_ = false;
};

} // namespace tabwright::browserdata
