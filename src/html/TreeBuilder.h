#pragma once

#include "html/Arena.h"
#include "html/Node.h"
#include "html/Tags.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace tabwright::html {

/// An element while the tree that it stands in is made.
/// The stored node, with what only the construction needs: the ways back in the tree, and the tag's traits. Its records
/// stay in the arena with the document, of which readers see the `NodeRecord` alone.
struct Element : NodeRecord {
  Element* parent = nullptr;
  NodeRecord* previous = nullptr; ///< the sibling before it
  NodeRecord* last = nullptr;     ///< child
  Element* structure = nullptr;   ///< the innermost element of a table's structure that was open with it, or itself
  /// Those of its name, but for foreign elements, whose part in the rules is another.
  TagTraits tag;
  /// Levels below the root and the root itself; as it was when the element was put in, whatever is moved later.
  std::uint16_t depth = 1;
  /// On the stack of open elements.
  bool isOpen = false;

  [[nodiscard]] std::string_view name() const { return {characters, length}; }
  [[nodiscard]] bool has(unsigned traits) const { return tag.has(traits); }
};

/// Makes and links the nodes of a document. Costs the same wherever a node goes.
class TreeBuilder {
public:
  /// The nodes live in that arena, which outlives this and all of them.
  explicit TreeBuilder(Arena& nodes) : nodes_(nodes) {}

  /// An element that stands nowhere yet. `name` and the texts of `attributes` stay where they are.
  Element& makeElement(std::string_view name, std::span<const Attribute> attributes, TagTraits tag = {}) {
    Element& element = nodes_.make(Element{});
    element.tag = tag;
    element.characters = name.data();
    element.length = static_cast<std::uint32_t>(name.size());
    setAttributes(element, attributes);
    return element;
  }
  /// The same without children and parent.
  Element& copyOf(const Element& element) {
    Element& copy = nodes_.make(Element{});
    copy.tag = element.tag;
    copy.characters = element.characters;
    copy.length = element.length;
    copy.attributes = element.attributes;
    copy.count = element.count;
    return copy;
  }
  /// Replaces all attributes. The list is copied, the texts in it stay where they are.
  void setAttributes(Element& element, std::span<const Attribute> attributes) {
    element.attributes = attributes.empty() ? nullptr : nodes_.copyAll(attributes);
    element.count = static_cast<std::uint32_t>(attributes.size());
  }

  /// A text, and the same with white space collapsed; both stay where they are.
  void insertText(std::string_view text, std::string_view collapsed, Element& parent, Element* before = nullptr) {
    NodeRecord& record = nodes_.make(NodeRecord{});
    record.isText = true;
    record.characters = text.data();
    record.length = static_cast<std::uint32_t>(text.size());
    record.collapsed = collapsed.data();
    record.count = static_cast<std::uint32_t>(collapsed.size());
    link(record, parent, before);
  }

  /// Puts an element that stands nowhere into `parent`, before a child of it or behind all.
  void insert(Element& element, Element& parent, Element* before = nullptr) {
    element.parent = &parent;
    element.depth = static_cast<std::uint16_t>(parent.depth + 1);
    element.previous = link(element, parent, before);
  }

  /// Takes an element out of its parent, if it has one, with all that is in it.
  void remove(Element& element) {
    if (!element.parent)
      return;
    (element.previous ? element.previous->next : element.parent->firstChild) = element.next;
    if (!element.next)
      element.parent->last = element.previous;
    else if (!element.next->isText)
      static_cast<Element*>(element.next)->previous = element.previous;
    element.next = nullptr;
    element.parent = nullptr;
  }

  /// Gives all children of `from` to `to`, which has none.
  void moveChildren(Element& from, Element& to) {
    for (NodeRecord* child = from.firstChild; child; child = child->next)
      if (!child->isText)
        static_cast<Element*>(child)->parent = &to;
    to.firstChild = std::exchange(from.firstChild, nullptr);
    to.last = std::exchange(from.last, nullptr);
  }

private:
  /// Yields the sibling before the new node. Texts don't keep theirs, since only elements are taken out again.
  NodeRecord* link(NodeRecord& node, Element& parent, Element* before) {
    NodeRecord* const previous = before ? before->previous : parent.last;
    (previous ? previous->next : parent.firstChild) = &node;
    node.next = before;
    (before ? before->previous : parent.last) = &node;
    return previous;
  }

  Arena& nodes_;
};

} // namespace tabwright::html
