// Lists, item by item. An item is tight against the one before it unless that one has blank lines in it. What stands in
// a list beside its items is made an item too, but for a list, which belongs to the item before it.
#include "browserdata/pagetext/ElementRules.h"
#include "browserdata/pagetext/PageTextWalk.h"

#include <fmt/core.h>

#include <charconv>
#include <utility>

namespace tabwright::browserdata {

namespace {

constexpr int greatestNumber = 999'999'999; // as CommonMark reads it

int numberOf(std::string_view text) {
  int number = 1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && number >= 0 && number <= greatestNumber ? number : 1;
}

} // namespace

struct PageTextWalk::ListState {
  bool isOrdered = false;
  char mark = '-'; ///< behind a number, or alone
  int number = 1;
  bool hasItems = false;
  bool hasGap = false;     ///< in the last item
  std::string marker = {}; ///< of the last item
};

void PageTextWalk::addList(const html::Node& list) {
  if (isInLine())
    return addBlockOf(list);
  endBlock();
  ListState state{.isOrdered = list.name() == "ol"};
  state.number = state.isOrdered ? numberOf(list.attribute("start").value_or("1")) : 1;
  state.mark = state.isOrdered ? '.' : '-';
  // Directly behind a list of its kind it would go on with that one.
  if (listEnd_ == blocks_.size() && listMark_ == state.mark)
    state.mark = state.isOrdered ? ')' : '*';
  // Beneath text a list that begins with another number would be read as more of the text. One that begins an item
  // follows as the item does.
  if (itemBegin_ != blocks_.size())
    blocks_.joinNext(itemDepth_ > 0 && paragraphEnd_ == blocks_.size() && state.number == 1);
  for (const html::Node child : list.children()) {
    if (!showsAnything(child))
      continue;
    const bool isList = !child.isText() && ruleOf(child) == ElementRule::list;
    if (!isList || !state.hasItems) {
      addItem(child, state);
      continue;
    }
    blocks_.reopenItem(state.marker);
    ++itemDepth_;
    blocks_.joinNext(true);
    addList(child);
    --itemDepth_;
    state.hasGap |= blocks_.close();
  }
  blocks_.joinNext(false);
  if (state.hasItems) {
    listEnd_ = blocks_.size();
    listMark_ = state.mark;
  }
}

void PageTextWalk::addItem(const html::Node& item, ListState& state) {
  if (state.hasItems)
    blocks_.joinNext(!state.hasGap);
  state.marker = !state.isOrdered ? fmt::format("{} ", state.mark) : fmt::format("{}{} ", state.number, state.mark);
  const std::size_t begin = blocks_.size();
  const std::size_t outerBegin = std::exchange(itemBegin_, begin);
  blocks_.openItem(state.marker);
  ++itemDepth_;
  add(item);
  endBlock();
  --itemDepth_;
  const bool hasGap = blocks_.close();
  itemBegin_ = outerBegin;
  taskMark_.clear();
  if (blocks_.size() == begin)
    return;
  state.hasGap = hasGap;
  state.hasItems = true;
  state.number += state.number < greatestNumber ? 1 : 0;
}

} // namespace tabwright::browserdata
