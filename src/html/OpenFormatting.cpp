#include "html/OpenElements.h"

#include <algorithm>

/// The part of the account that follows formatting elements: opening them again, and the standard's "adoption agency
/// algorithm", which mends formatting that was closed around a block.
namespace tabwright::html {

void OpenElements::reconstructFormatting() {
  std::size_t first = formats_.size();
  while (first > 0 && formats_[first - 1].id != marker && !formats_[first - 1].isOpen)
    --first;
  for (; first < formats_.size(); ++first) {
    Format& format = formats_[first];
    push(format.id, isFormatting);
    format.serial = lastSerial_;
    format.isOpen = true;
    spend(format.cost);
  }
}

std::string OpenElements::endExpensiveFormatting() {
  std::string tags;
  while (budget_ == 0 && !formats_.empty() && formats_.back().id != marker && !formats_.back().isOpen) {
    tags += "</" + formats_.back().name + ">";
    formats_.pop_back();
  }
  return tags;
}

void OpenElements::clearToMarker() {
  while (!formats_.empty()) {
    const bool isMarker = formats_.back().id == marker;
    formats_.pop_back();
    if (isMarker)
      return;
  }
}

// The last one behind the last marker.
std::size_t OpenElements::lastFormat(int id) const {
  for (std::size_t index = formats_.size(); index-- > 0 && formats_[index].id != marker;)
    if (formats_[index].id == id)
      return index;
  return nowhere;
}

std::size_t OpenElements::formatOf(unsigned serial) const {
  for (std::size_t index = formats_.size(); index-- > 0;)
    if (formats_[index].serial == serial && formats_[index].id != marker)
      return index;
  return nowhere;
}

std::size_t OpenElements::positionOf(unsigned serial) const {
  for (std::size_t position = stack_.size(); position-- > 0;)
    if (stack_[position].serial == serial)
      return position;
  return nowhere;
}

void OpenElements::forgetFormatting(int id) {
  const std::size_t format = lastFormat(id);
  if (format == nowhere)
    return;
  if (const std::size_t position = positionOf(formats_[format].serial); formats_[format].isOpen && position != nowhere)
    stack_.erase(stack_.begin() + static_cast<std::ptrdiff_t>(position));
  formats_.erase(formats_.begin() + static_cast<std::ptrdiff_t>(format));
}

void OpenElements::endFormatting(int id) {
  constexpr int maximumRounds = 8; // the standard's
  if (lastFormat(id) == nowhere)
    return endOther(id);
  for (int round = 0; round < maximumRounds && adopt(id); ++round) {
  }
}

// One round; true when there may be another.
bool OpenElements::adopt(int id) {
  const std::size_t format = lastFormat(id);
  if (format == nowhere)
    return false;
  const std::size_t position = formats_[format].isOpen ? positionOf(formats_[format].serial) : nowhere;
  if (position == nowhere) {
    formats_.erase(formats_.begin() + static_cast<std::ptrdiff_t>(format));
    return false;
  }
  for (std::size_t above = stack_.size(); --above > position;)
    if ((stack_[above].traits & boundsScope) != 0)
      return false;
  std::size_t furthestBlock = position + 1;
  while (furthestBlock < stack_.size() && (stack_[furthestBlock].traits & isSpecial) == 0)
    ++furthestBlock;
  if (furthestBlock == stack_.size()) {
    closeThrough(position);
    formats_.erase(formats_.begin() + static_cast<std::ptrdiff_t>(format));
    return false;
  }

  const unsigned blockSerial = stack_[furthestBlock].serial;
  std::size_t bookmark = cloneBetween(position, furthestBlock, format);
  const std::size_t old = lastFormat(id);
  Format clone = formats_[old];
  formats_.erase(formats_.begin() + static_cast<std::ptrdiff_t>(old));
  bookmark -= bookmark > old ? 1 : 0;
  stack_.erase(stack_.begin() + static_cast<std::ptrdiff_t>(position));
  const Entry entry{clone.id, isFormatting, ++lastSerial_};
  clone.serial = entry.serial;
  clone.isOpen = true;
  spend(clone.cost);
  formats_.insert(formats_.begin() + static_cast<std::ptrdiff_t>(std::min(bookmark, formats_.size())), clone);
  stack_.insert(stack_.begin() + static_cast<std::ptrdiff_t>(positionOf(blockSerial)) + 1, entry);
  return true;
}

// What is open between the formatting element and the block: formatting, as far as it is near, is copied, the rest is
// no longer open. Yields where in the list the formatting element's own copy belongs.
std::size_t OpenElements::cloneBetween(std::size_t formatting, std::size_t furthestBlock, std::size_t bookmark) {
  constexpr int maximumCopies = 3; // the standard's
  int count = 0;
  bool isFirstCopy = true;
  for (std::size_t node = furthestBlock; --node > formatting;) {
    ++count;
    std::size_t format = formatOf(stack_[node].serial);
    if (format != nowhere && count > maximumCopies) {
      formats_.erase(formats_.begin() + static_cast<std::ptrdiff_t>(format));
      bookmark -= bookmark > format ? 1 : 0;
      format = nowhere;
    }
    if (format == nowhere) {
      stack_.erase(stack_.begin() + static_cast<std::ptrdiff_t>(node));
      continue;
    }
    stack_[node].serial = formats_[format].serial = ++lastSerial_;
    spend(formats_[format].cost);
    if (isFirstCopy)
      bookmark = format + 1;
    isFirstCopy = false;
  }
  return bookmark;
}

} // namespace tabwright::html
