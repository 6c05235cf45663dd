#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::browserdata {

/// The lines of a text made of blocks, within quotes and items of lists: each line begins with the marks of what it is
/// in.
///
///     BlockLines lines;
///     lines.openItem("1. ");
///     lines.add("a\nb");
///     lines.close();
///     lines.take();              // "1. a\n   b\n"
///
/// Nothing is written for what holds no block. More levels than `deepest` leave no mark, so that no line costs out of
/// proportion to what it says.
class BlockLines {
public:
  static constexpr std::size_t deepest = 24;

  void openQuote() { levels_.push_back({.mark = "> ", .isQuote = true}); }
  /// `marker` ends with a blank.
  void openItem(std::string marker) { levels_.push_back({.mark = std::move(marker)}); }
  /// More of the item that was closed last, under its marker.
  void reopenItem(std::string marker) { levels_.push_back({.mark = std::move(marker), .hasLines = true}); }
  /// Ends the quote or item that was opened last. True when a blank line stands between blocks of it.
  bool close();

  /// A block of one or more lines, divided by line feeds, without one at the end. A blank line stands before it.
  void add(std::string_view lines);
  /// Makes the next block follow without a blank line, or with one again.
  void joinNext(bool joins) { joinsNext_ = joins; }

  /// The bytes that have been written: equal numbers mean that nothing was.
  [[nodiscard]] std::size_t size() const { return text_.size(); }
  /// All lines, each with its line feed.
  [[nodiscard]] std::string take() { return std::move(text_); }

private:
  struct Level {
    std::string mark;
    bool isQuote = false;
    bool hasLines = false;
    bool hasGaps = false;
  };

  void addPrefix();
  void addGap();

  std::string text_;
  std::vector<Level> levels_;
  bool joinsNext_ = false;
};

} // namespace tabwright::browserdata
