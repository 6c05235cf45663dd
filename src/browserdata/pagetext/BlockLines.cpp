#include "browserdata/pagetext/BlockLines.h"

#include <algorithm>

namespace tabwright::browserdata {

bool BlockLines::close() {
  const bool hasGaps = levels_.back().hasGaps;
  levels_.pop_back();
  return hasGaps;
}

void BlockLines::add(std::string_view lines) {
  if (!text_.empty() && !joinsNext_)
    addGap();
  joinsNext_ = false;
  while (true) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    const std::size_t begin = text_.size();
    addPrefix();
    if (end == 0) // an empty line of code has no blanks
      text_.resize(std::max(begin, text_.find_last_not_of(' ') + 1));
    text_ += lines.substr(0, end);
    text_ += '\n';
    if (end == lines.size())
      return;
    lines.remove_prefix(end + 1);
  }
}

// An item's marker stands on its first line alone, and blanks below it.
void BlockLines::addPrefix() {
  for (std::size_t depth = 0; depth < std::min(levels_.size(), deepest); ++depth) {
    Level& level = levels_[depth];
    if (level.isQuote || !level.hasLines)
      text_ += level.mark;
    else
      text_.append(level.mark.size(), ' ');
    level.hasLines = true;
  }
}

// A gap belongs to what its two neighbours are both in.
void BlockLines::addGap() {
  const std::size_t begin = text_.size();
  for (std::size_t depth = 0; depth < std::min(levels_.size(), deepest) && levels_[depth].hasLines; ++depth) {
    if (levels_[depth].isQuote)
      text_ += levels_[depth].mark;
    else
      text_.append(levels_[depth].mark.size(), ' ');
    levels_[depth].hasGaps = true;
  }
  text_.resize(std::max(begin, text_.find_last_not_of(' ') + 1));
  text_ += '\n';
}

} // namespace tabwright::browserdata
