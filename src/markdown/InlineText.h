#pragma once

#include "markdown/Theme.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::markdown {

/// On: looks, colours and hyperlinks are written as escape sequences. Off: everything is text.
enum class TerminalColours : std::uint8_t { on, off };

/// Letters of one look; of a link, with its address.
struct TerminalStyle {
  Theme::TerminalLook look;
  std::string address; ///< as `openableAddress` gives it, or empty

  /// This style with another look added to it.
  [[nodiscard]] TerminalStyle with(const Theme::TerminalLook& added) const;
  bool operator==(const TerminalStyle&) const = default;
};

/// A text of many styles that is wrapped to a terminal's cells.
///
/// Lines end at blanks and beside wide characters (as Unicode's UAX 14 allows it there), never within what is one
/// character to a reader. Control characters and marks that turn the direction of writing do not get in.
class InlineText {
public:
  /// Bytes of the text: one line, without the blanks at its end.
  struct Range {
    std::size_t begin;
    std::size_t end;
  };

  /// The treatment of a word that is wider than the line.
  enum class LongWords : std::uint8_t { whole, split };

  /// Adds text whose runs of blanks, tabs and line feeds count as one blank.
  void append(std::string_view text, const TerminalStyle& style);

  /// Adds text as it stands, tabs as four blanks.
  void appendVerbatim(std::string_view text, const TerminalStyle& style);

  /// Ends the line.
  void endLine();

  /// The lines of at most `width` cells (at least 1), apart from words that stay whole. None for an empty text.
  [[nodiscard]] std::vector<Range> lines(std::size_t width, LongWords longWords) const;

  /// The cells of the widest word, that is the least width without a word that is too long.
  [[nodiscard]] std::size_t widestWord() const;

  /// The cells of the text when it isn't wrapped.
  [[nodiscard]] std::size_t widestLine() const;

  [[nodiscard]] std::size_t cells(Range line) const;

  /// The line for the terminal; what follows it has no look.
  [[nodiscard]] std::string rendered(Range line, TerminalColours colours) const;

  [[nodiscard]] bool empty() const { return text_.empty(); }

private:
  struct Span {
    std::size_t end;
    TerminalStyle style;
  };
  struct Word {
    std::size_t begin;
    std::size_t end; ///< with the blanks after it
    bool endsLine;
  };

  void add(std::string_view text, const TerminalStyle& style);
  [[nodiscard]] std::vector<Word> words() const;
  [[nodiscard]] Range trimmed(std::size_t begin, std::size_t end) const;

  std::string text_;
  std::vector<Span> spans_; ///< in order, one after the other
};

} // namespace tabwright::markdown
