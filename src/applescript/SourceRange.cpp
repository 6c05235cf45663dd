#include "applescript/SourceRange.h"

#include <algorithm>

namespace tabwright::applescript {

SourceRange SourceRange::joinedWith(SourceRange other) const {
  const std::size_t start = std::min(offset, other.offset);
  return {start, std::max(end(), other.end()) - start};
}

SourcePosition positionOf(std::string_view source, std::size_t offset) {
  SourcePosition position;
  offset = std::min(offset, source.size());
  for (std::size_t i = 0; i < offset; ++i) {
    const auto byte = static_cast<unsigned char>(source[i]);
    // The CR of a CR LF takes no column, and leaves ending the line to its LF.
    const bool isHalfOfLineEnd = byte == '\r' && i + 1 < source.size() && source[i + 1] == '\n';
    if (byte == '\n' || (byte == '\r' && !isHalfOfLineEnd)) {
      ++position.line;
      position.column = 1;
    } else if ((byte & 0xC0) != 0x80 && !isHalfOfLineEnd) { // one per scalar value, not per byte
      ++position.column;
    }
  }
  return position;
}

} // namespace tabwright::applescript
