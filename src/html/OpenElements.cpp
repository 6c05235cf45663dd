#include "html/OpenElements.h"

#include "html/Document.h"

#include <algorithm>
#include <initializer_list>

/// The names of steps are those of the standard's section 13.2.6, "Tree construction", whose rules for the body and for
/// tables are followed here without making nodes. Other insertion modes open nothing that counts: `select` is the
/// caller's, frame sets and templates never come here.
namespace tabwright::html {

SeenTag OpenElements::tag(std::string_view name, std::size_t length) {
  const TagTraits known = traitsOf(name);
  if (known.id >= 0)
    return {known.id, known.traits, name, length};
  const int nextId = knownTags() + static_cast<int>(furtherIds_.size());
  return {furtherIds_.try_emplace(std::string(name), nextId).first->second, 0, name, length};
}

bool OpenElements::hasRoomFor(const SeenTag& tag) const {
  if (tag.has(isVoid))
    return true;
  if (stack_.size() + 2 >= static_cast<std::size_t>(Document::maximumDepth)) // "html" and "body" aren't on this stack
    return false;
  if (!tag.has(isFormatting) || tag.id == tagA || tag.id == tagNobr) // these end an earlier one
    return true;
  std::ptrdiff_t same = 0;
  for (auto format = formats_.rbegin(); format != formats_.rend() && format->id != marker; ++format)
    same += format->id == tag.id ? 1 : 0;
  return same < maximumSameFormats;
}

void OpenElements::leaveOut(const SeenTag& tag) {
  leftOut_.push_back(tag.id);
  ++leftOutCounts_[tag.id];
}

bool OpenElements::closesLeftOut(const SeenTag& tag) {
  const auto count = leftOutCounts_.find(tag.id);
  if (count == leftOutCounts_.end() || count->second == 0)
    return false;
  int last = 0;
  do {
    last = leftOut_.back();
    --leftOutCounts_[last];
    leftOut_.pop_back();
  } while (last != tag.id);
  return true;
}

void OpenElements::start(const SeenTag& tag) {
  if (tag.has(closesParagraph) && openParagraphs_ > 0)
    closeInScope(tagP, tagButton);
  if (tag.has(isHeading) && !stack_.empty() && (stack_.back().traits & isHeading) != 0)
    pop();
  if (tag.has(isRow))
    return startInTable(tag);

  switch (tag.id) {
  case tagLi:
    closeItem(tagLi, tagLi);
    break;
  case tagDd:
  case tagDt:
    closeItem(tagDd, tagDt);
    break;
  case tagButton:
    closeInScope(tagButton);
    break;
  case tagOptgroup:
  case tagOption:
    if (topIs(tagOption))
      pop();
    if (tag.id == tagOptgroup && isInSelect() && topIs(tagOptgroup))
      pop();
    break;
  case tagRb:
  case tagRp:
  case tagRt:
  case tagRtc:
    if (find(tagRuby, boundsScope) != nowhere)
      while (topIs(tagRb) || topIs(tagRp) || topIs(tagRt))
        pop();
    break;
  case tagA:
    if (lastFormat(tagA) != nowhere) {
      endFormatting(tagA);
      forgetFormatting(tagA);
    }
    break;
  case tagNobr:
    reconstructFormatting();
    if (find(tagNobr, boundsScope) != nowhere) {
      endFormatting(tagNobr);
      forgetFormatting(tagNobr);
    }
    break;
  default:
    break;
  }

  if (!tag.has(isSpecial) || tag.has(resumesFormatting))
    reconstructFormatting();
  if (tag.has(isVoid))
    return;
  push(tag.id, tag.traits);
  if (tag.has(isFormatting))
    formats_.push_back({tag.id, lastSerial_, true, 1 + tag.length / 100, std::string(tag.name)});
}

void OpenElements::end(const SeenTag& tag) {
  if (tag.has(isFormatting))
    return endFormatting(tag.id);
  if (tag.has(isRow))
    return endInTable(tag.id);
  if (tag.has(isBlock))
    return closeInScope(tag.id);
  if (tag.has(isHeading)) {
    for (std::size_t position = stack_.size(); position-- > 0 && (stack_[position].traits & boundsScope) == 0;)
      if ((stack_[position].traits & isHeading) != 0)
        return closeThrough(position);
    return;
  }
  switch (tag.id) {
  case tagP:
    if (openParagraphs_ > 0)
      closeInScope(tagP, tagButton);
    return;
  case tagLi:
    return closeInScope(tagLi, tagOl, tagUl);
  case tagDd:
  case tagDt:
    return closeInScope(tag.id);
  case tagForm: // only this element, whatever is open in it
    if (const std::size_t form = find(tagForm, boundsScope); form != nowhere)
      stack_.erase(stack_.begin() + static_cast<std::ptrdiff_t>(form));
    return;
  case tagSelect:
    if (isInSelect())
      closeThrough(find(tagSelect, 0));
    return;
  case tagOptgroup:
  case tagOption:
    if (!isInSelect())
      return endOther(tag.id);
    if (tag.id == tagOptgroup && topIs(tagOption))
      pop();
    if (topIs(tag.id))
      pop();
    return;
  default:
    return endOther(tag.id);
  }
}

// The innermost open element `id`; nowhere when an element that bounds the scope comes first.
std::size_t OpenElements::find(int id, unsigned bounds, int furtherBound, int anotherBound) const {
  for (std::size_t position = stack_.size(); position-- > 0;) {
    const Entry& entry = stack_[position];
    if (entry.id == id)
      return position;
    if ((entry.traits & bounds) != 0 || entry.id == furtherBound || entry.id == anotherBound)
      return nowhere;
  }
  return nowhere;
}

void OpenElements::closeInScope(int id, int furtherBound, int anotherBound) {
  if (const std::size_t position = find(id, boundsScope, furtherBound, anotherBound); position != nowhere)
    closeThrough(position);
}

void OpenElements::closeThrough(std::size_t position) {
  while (stack_.size() > position)
    pop();
}

// A new item ends the one that is open in the same list.
void OpenElements::closeItem(int id, int otherId) {
  for (std::size_t position = stack_.size(); position-- > 0;) {
    const Entry& entry = stack_[position];
    if (entry.id == id || entry.id == otherId)
      return closeThrough(position);
    if ((entry.traits & isSpecial) != 0 && entry.id != tagAddress && entry.id != tagDiv && entry.id != tagP)
      return;
  }
}

void OpenElements::startInTable(const SeenTag& tag) {
  const std::size_t table = find(tagTable, 0);
  if (tag.id == tagTable) {
    const bool isInCell =
        table != nowhere && std::any_of(stack_.begin() + static_cast<std::ptrdiff_t>(table), stack_.end(),
                                        [](const Entry& entry) { return (entry.traits & holdsFormatting) != 0; });
    if (table != nowhere && !isInCell)
      closeThrough(table);
    return push(tag.id, tag.traits);
  }
  if (table == nowhere)
    return; // ignored there

  const auto within = [&](std::initializer_list<int> ids) { // the place of one of them in the innermost table
    for (std::size_t position = stack_.size(); position-- > table;)
      if (std::ranges::find(ids, stack_[position].id) != ids.end())
        return position;
    return nowhere;
  };
  const bool isCell = tag.id == tagTd || tag.id == tagTh;
  const std::size_t row = isCell ? within({tagTr}) : nowhere;
  const std::size_t section = isCell || tag.id == tagTr ? within({tagTbody, tagThead, tagTfoot}) : nowhere;
  closeThrough((row != nowhere ? row : section != nowhere ? section : table) + 1);
  if ((isCell || tag.id == tagTr) && section == nowhere && row == nowhere)
    push(tagTbody, isSpecial | isRow);
  if (isCell && row == nowhere)
    push(tagTr, isSpecial | isRow);
  if (tag.has(isVoid))
    return;
  push(tag.id, tag.traits);
}

void OpenElements::endInTable(int id) {
  if (id == tagCol)
    return;
  if (id == tagColgroup) {
    if (topIs(tagColgroup))
      pop();
    return;
  }
  if (const std::size_t position = find(id, 0, tagTable); position != nowhere)
    closeThrough(position);
}

void OpenElements::endOther(int id) {
  if (const std::size_t position = find(id, isSpecial); position != nowhere)
    closeThrough(position);
}

void OpenElements::push(int id, unsigned traits) {
  stack_.push_back({id, traits, ++lastSerial_});
  openParagraphs_ += id == tagP ? 1 : 0;
  openSelects_ += id == tagSelect ? 1 : 0;
  if ((traits & holdsFormatting) != 0)
    formats_.push_back({marker, lastSerial_, false, 0, {}});
}

void OpenElements::pop() {
  const Entry entry = stack_.back();
  stack_.pop_back();
  openParagraphs_ -= entry.id == tagP ? 1 : 0;
  openSelects_ -= entry.id == tagSelect ? 1 : 0;
  if ((entry.traits & isFormatting) != 0) {
    if (const std::size_t format = formatOf(entry.serial); format != nowhere)
      formats_[format].isOpen = false;
  }
  if ((entry.traits & holdsFormatting) != 0)
    clearToMarker();
  if (!leftOut_.empty()) { // they were inside
    leftOut_.clear();
    leftOutCounts_.clear();
  }
}

} // namespace tabwright::html
