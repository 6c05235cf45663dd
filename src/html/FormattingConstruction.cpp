// Formatting elements: opening them again, and the standard's "adoption agency algorithm", which mends formatting that
// was closed around a block.
#include "html/TreeConstruction.h"

#include <algorithm>

namespace tabwright::html {

// At most three that are alike are kept, as the standard says; null is a marker.
void TreeConstruction::addFormatting(Element* element) {
  constexpr int maximumAlike = 3;
  int alike = 0;
  const auto isLike = [&](const Element& other) {
    return other.tag.tag == element->tag.tag &&
           std::ranges::equal(Node(other).attributes(), Node(*element).attributes());
  };
  for (std::size_t place = element ? formatting_.size() : 0; place-- > 0 && formatting_[place];)
    if (isLike(*formatting_[place]) && ++alike == maximumAlike) {
      eraseFormatting(place);
      break;
    }
  // Beyond the standard: the oldest is forgotten, so that no walk over the list grows with the page.
  if (formatting_.size() == maximumFormatting)
    eraseFormatting(0);
  formatting_.push_back(element);
}

void TreeConstruction::clearToMarker() {
  while (!formatting_.empty()) {
    const bool isMarker = !formatting_.back();
    formatting_.pop_back();
    if (isMarker)
      return;
  }
}

// The last one behind the last marker; null when there is none.
Element* TreeConstruction::lastFormatting(Tag tag) const {
  for (std::size_t place = formatting_.size(); place-- > 0 && formatting_[place];)
    if (formatting_[place]->tag.tag == tag)
      return formatting_[place];
  return nullptr;
}

void TreeConstruction::reconstructFormatting() {
  std::size_t place = formatting_.size();
  // Back to the last one that is open or a marker: all behind it are opened again, in their order.
  while (place > 0 && formatting_[place - 1] && !formatting_[place - 1]->isOpen)
    --place;
  for (const std::size_t end = formatting_.size(); place < end; ++place) {
    // A page of unclosed formatting and many blocks would otherwise grow with the product of both.
    if (budget_ == 0)
      return formatting_.resize(place);
    --budget_;
    Element& copy = tree_.copyOf(*formatting_[place]);
    insertElement(copy);
    formatting_[place] = &copy;
  }
}

void TreeConstruction::endFormatting(const Token& token) {
  constexpr int maximumRounds = 8; // the standard's
  if (!lastFormatting(token.traits.tag))
    return endAny(token);
  if (current().tag.tag == token.traits.tag && placeOf(formatting_, current()) == nowhere)
    return pop();
  for (int round = 0; round < maximumRounds && adopt(token.traits.tag); ++round) {
  }
}

// One round; true when there may be another.
bool TreeConstruction::adopt(Tag tag) {
  Element* const formatting = lastFormatting(tag);
  if (!formatting)
    return false;
  // On the list, but closed: the end tag only takes it off.
  if (!formatting->isOpen) {
    eraseFormatting(placeOf(formatting_, *formatting));
    return false;
  }
  const std::size_t position = placeOf(stack_, *formatting);
  const auto above = stack_.begin() + static_cast<std::ptrdiff_t>(position) + 1;
  // An end tag in a cell, say, doesn't reach formatting outside the table.
  if (std::any_of(above, stack_.end(), [](const Element* element) { return element->has(boundsScope); }))
    return false;
  // The outermost special element that was opened within the formatting: without one there is nothing to mend.
  const auto furthest =
      std::find_if(above, stack_.end(), [](const Element* element) { return element->has(isSpecial); });
  if (furthest == stack_.end()) {
    closeThrough(position);
    eraseFormatting(placeOf(formatting_, *formatting));
    return false;
  }

  // Text that waits belongs where its element stands before the tree is changed.
  flushText();
  Element& block = **furthest;
  Element* last = &block;
  // The place at which the formatting itself is listed again; it moves along as the list does.
  std::size_t bookmark = placeOf(formatting_, *formatting);
  constexpr int maximumCopies = 3; // the standard's
  int count = 0;
  for (std::size_t between = placeOf(stack_, block); --between > position;) {
    Element*& node = stack_[between];
    std::size_t place = placeOf(formatting_, *node);
    if (++count > maximumCopies && place != nowhere) {
      eraseFormatting(place);
      bookmark -= bookmark > place ? 1 : 0;
      place = nowhere;
    }
    // No formatting, or no longer on the list: it stays where it stands and is closed.
    if (place == nowhere) {
      takeOut(between);
      continue;
    }
    Element& copy = tree_.copyOf(*node);
    replace(*node, copy);
    node = formatting_[place] = &copy;
    if (last == &block)
      bookmark = place + 1;
    tree_.remove(*last);
    tree_.insert(*last, copy);
    last = &copy;
  }
  tree_.remove(*last);
  const Place target = placeIn(*stack_[position - 1]);
  tree_.insert(*last, *target.parent, target.before);

  Element& copy = tree_.copyOf(*formatting);
  tree_.moveChildren(block, copy);
  tree_.insert(copy, block);
  const std::size_t old = placeOf(formatting_, *formatting);
  eraseFormatting(old);
  formatting_.insert(formatting_.begin() + static_cast<std::ptrdiff_t>(bookmark - (bookmark > old ? 1 : 0)), &copy);
  takeOut(position);
  stack_.insert(stack_.begin() + static_cast<std::ptrdiff_t>(placeOf(stack_, block)) + 1, &copy);
  open(copy, block.structure);
  return true;
}

} // namespace tabwright::html
