#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::browserdata {

/// The form that a page's text is written in.
enum class TextForm : std::uint8_t { markdown, plain };

/// The kind of place that inline content stands in.
enum class InlinePlace : std::uint8_t {
  paragraph,
  heading, ///< one line; breaks become blanks
  cell     ///< one line of a table's row; breaks are written as `<br>`
};

/// A mark around inline content.
enum class InlineMark : std::uint8_t { emphasis, strong, deletion, link };

/// A piece of inline content, in the order of the page.
struct InlinePiece {
  enum class Kind : std::uint8_t { text, code, lineBreak, open, close, image, markup };
  Kind kind = Kind::text;
  InlineMark mark = InlineMark::emphasis; ///< of `open` and `close`
  std::string text = {};                  ///< the text or code, an image's alternative text, markup as it is written
  std::string address = {};               ///< of an image, and of the `open` of a link
  std::string title = {};                 ///< likewise
};

/// The inline content of one block: collected while the page is walked over, then written as a whole, since its marks
/// depend on what stands beside them.
///
///     InlineText line;
///     line.open(InlineMark::strong);
///     line.addText("All is well ");
///     line.close(InlineMark::strong);
///     line.take(InlinePlace::paragraph, TextForm::markdown);   // "**All is well**"
class InlineText {
public:
  /// Adds text whose runs of white space are one blank each; a blank behind a blank, or at the beginning, is dropped.
  void addText(std::string_view collapsed) { add(InlinePiece::Kind::text, collapsed); }
  /// The same of code, which grows together with code directly before it.
  void addCode(std::string_view collapsed) { add(InlinePiece::Kind::code, collapsed); }
  void addLineBreak();
  /// An image; `address` is written as it is but for what would end it.
  void addImage(std::string_view alternative, std::string address, std::string_view title);
  /// Markup that is written as it is, in Markdown alone.
  void addMarkup(std::string_view markup);

  /// Begins a mark. False, and nothing is begun, within a mark of its kind: then it must not be closed either.
  [[nodiscard]] bool open(InlineMark mark, std::string address = {}, std::string_view title = {});
  /// Ends the mark that was begun last, which is `mark`.
  void close(InlineMark mark);

  /// True when something has been added that a reader would see since the last `take`.
  [[nodiscard]] bool hasContent() const { return hasContent_; }
  /// True when the last thing added was a line break.
  [[nodiscard]] bool endsInBreak() const;
  /// True within a link.
  [[nodiscard]] bool isInLink() const;

  /// All that was added, as Markdown or plain text: lines divided by line feeds, without one at the end; empty when
  /// there is nothing to see. Marks that are open stay so, around what is added next. Marks that could not be told from
  /// text where they stand are left out; the text never is.
  [[nodiscard]] std::string take(InlinePlace place, TextForm form);

private:
  void add(InlinePiece::Kind kind, std::string_view collapsed);

  struct OpenMark {
    InlineMark mark;
    std::string address;
    std::string title;
  };

  void begin(const OpenMark& mark);

  std::vector<InlinePiece> pieces_;
  std::vector<OpenMark> open_;
  bool endsInBlank_ = true;
  bool hasContent_ = false;
};

} // namespace tabwright::browserdata
