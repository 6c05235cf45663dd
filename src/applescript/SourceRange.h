#pragma once

#include <cstddef>
#include <string_view>

namespace tabwright::applescript {

/// A stretch of a script's text. Offsets and lengths count UTF-8 bytes; lines and columns are derived on demand.
struct SourceRange {
  std::size_t offset = 0;
  std::size_t length = 0;

  [[nodiscard]] std::size_t end() const { return offset + length; }
  /// The smallest range that holds both.
  [[nodiscard]] SourceRange joinedWith(SourceRange other) const;
  friend bool operator==(SourceRange, SourceRange) = default;
};

/// The place of an offset: 1-based line, 1-based column in Unicode scalar values. Lines end at LF, CR or CR LF.
struct SourcePosition {
  std::size_t line = 1;
  std::size_t column = 1;
};
/// An offset beyond the text stands for its end. Walks the text from its beginning: for messages, not for loops.
[[nodiscard]] SourcePosition positionOf(std::string_view source, std::size_t offset);

} // namespace tabwright::applescript
