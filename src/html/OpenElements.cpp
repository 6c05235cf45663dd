// The stack of open elements, and where nodes go. A count of the open elements of each tag tells most searches that
// there is nothing to find; each element remembers its table's structure, so that the rules of tables need no search
// either. Text is collected until a node or another place comes: what the page wrote in pieces becomes one node.
#include "html/Document.h"
#include "html/TreeConstruction.h"
#include "html/WhiteSpace.h"

#include <algorithm>

namespace tabwright::html {

namespace {

/// `text` with runs of white space collapsed: itself where there is nothing to do.
std::string_view collapsed(std::string_view text, Arena& arena) {
  bool afterBlank = false;
  const auto first = std::ranges::find_if(text, [&](char character) {
    const bool isAsItShould = !isSpace(character) || (character == ' ' && !afterBlank);
    afterBlank = isSpace(character);
    return !isAsItShould;
  });
  if (first == text.end())
    return text;
  char* const begin = static_cast<char*>(arena.allocate(text.size()));
  char* end = std::copy(text.begin(), first, begin);
  afterBlank = end != begin && end[-1] == ' ';
  for (auto character = first; character != text.end(); ++character) {
    if (!isSpace(*character))
      *end++ = *character;
    else if (!afterBlank)
      *end++ = ' ';
    afterBlank = isSpace(*character);
  }
  return {begin, static_cast<std::size_t>(end - begin)};
}

} // namespace

// The innermost open element with that tag; nowhere when an element that bounds the scope comes first.
std::size_t TreeConstruction::find(Tag tag, unsigned bounds, Tag bound, Tag anotherBound) const {
  for (std::size_t position = open_[tag] > 0 ? stack_.size() : 0; position-- > 0;) {
    const Element& element = *stack_[position];
    if (element.tag.tag == tag)
      return position;
    if (element.has(bounds) || element.tag.tag == bound || element.tag.tag == anotherBound)
      return nowhere;
  }
  return nowhere;
}

bool TreeConstruction::closeInScope(Tag tag, Tag bound, Tag anotherBound) {
  const std::size_t position = find(tag, boundsScope, bound, anotherBound);
  if (position != nowhere)
    closeThrough(position);
  return position != nowhere;
}

void TreeConstruction::closeThrough(std::size_t position) {
  while (stack_.size() > position)
    pop();
}

void TreeConstruction::closeImplied(Tag except) {
  while (current().has(impliesEnd) && current().tag.tag != except)
    pop();
}

std::size_t TreeConstruction::placeOf(const std::vector<Element*>& elements, const Element& element) {
  const auto place = std::find(elements.rbegin(), elements.rend(), &element);
  return place == elements.rend() ? nowhere : static_cast<std::size_t>(elements.rend() - place) - 1;
}

Element& TreeConstruction::insertElement(std::string_view name, TagTraits tag, std::span<const Attribute> attributes) {
  return insertElement(tree_.makeElement(name, attributes, tag));
}

Element& TreeConstruction::insertElement(Tag tag) {
  return insertElement(nameOf(tag), traitsOf(nameOf(tag)), {});
}

Element& TreeConstruction::insertElement(const Token& token) {
  const Tag tag = token.traits.tag;
  return insertElement(tag == tag_unknown ? texts_.copy(token.name) : nameOf(tag), token.traits, token.attributes);
}

// With no room any deeper, an element becomes a sibling of the one that it would stand in, as in browsers.
Element& TreeConstruction::insertElement(Element& element) {
  flushText();
  while (current().depth >= Document::maximumDepth || stack_.size() >= Document::maximumDepth)
    takeOut(stack_.size() - 1);
  const Place place = placeIn(current());
  tree_.insert(element, *place.parent, place.before);
  if (!element.has(isVoid))
    push(element);
  return element;
}

void TreeConstruction::push(Element& element) {
  open(element, element.has(isRow) ? &element : stack_.empty() ? nullptr : current().structure);
  stack_.push_back(&element);
}

void TreeConstruction::open(Element& element, Element* structure) {
  element.isOpen = true;
  element.structure = structure;
  ++open_[element.tag.tag];
}

void TreeConstruction::pop() {
  const Element& element = current();
  takeOut(stack_.size() - 1);
  // A cell or a caption has put a marker on the list when it was opened.
  if (element.has(isRow) && !isStructure(element))
    clearToMarker();
}

void TreeConstruction::takeOut(std::size_t position) {
  Element& element = *stack_[position];
  element.isOpen = false;
  --open_[element.tag.tag];
  stack_.erase(stack_.begin() + static_cast<std::ptrdiff_t>(position));
}

void TreeConstruction::replace(Element& element, Element& copy) {
  element.isOpen = false;
  --open_[element.tag.tag];
  open(copy, element.structure);
}

// In `target`, but before the table where that holds nothing but its structure.
TreeConstruction::Place TreeConstruction::placeIn(Element& target) const {
  if (!isFostering_ || !isStructure(target))
    return {&target, nullptr};
  const std::size_t table = find(tag_table, 0); // at the deepest level a table's parts may stand without it
  return table == nowhere ? Place{&target, nullptr} : Place{stack_[table]->parent, stack_[table]};
}

void TreeConstruction::insertText(std::string_view text) {
  const Place place = placeIn(current());
  if (place != textPlace_)
    flushText();
  textPlace_ = place;
  text_ += text;
}

void TreeConstruction::flushText() {
  if (text_.empty())
    return;
  const std::string_view text = texts_.copy(text_);
  tree_.insertText(text, collapsed(text, texts_), *textPlace_.parent, textPlace_.before);
  text_.clear();
}

} // namespace tabwright::html
