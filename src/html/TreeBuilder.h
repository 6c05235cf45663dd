#pragma once

#include "html/Arena.h"
#include "html/Node.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tabwright::html {

/// Makes a document's nodes, in the order in which they stand: a node goes behind those that its parent has so far.
class TreeBuilder {
public:
  explicit TreeBuilder(Arena& nodes) : nodes_(nodes) {}

  /// The first element, in which all others stand. The builder is in it from then on.
  const NodeRecord& begin(std::string_view name, std::span<const Attribute> attributes) {
    NodeRecord& root = makeElement(name, attributes);
    open_.push_back({&root, nullptr});
    return root;
  }

  /// How many elements the builder is in.
  [[nodiscard]] std::size_t depth() const { return open_.size(); }

  /// An element in the one that the builder is in, which is then in the new one until `close`.
  void openElement(std::string_view name, std::span<const Attribute> attributes) {
    NodeRecord& element = makeElement(name, attributes);
    append(element);
    open_.push_back({&element, nullptr});
  }
  void close() { open_.pop_back(); }

  /// A text, and the same with white space collapsed; both stay where they are.
  void addText(std::string_view text, std::string_view collapsed) {
    NodeRecord record;
    record.isText = true;
    record.characters = text.data();
    record.length = static_cast<std::uint32_t>(text.size());
    record.collapsed = collapsed.data();
    record.count = static_cast<std::uint32_t>(collapsed.size());
    append(nodes_.make(record));
  }

private:
  struct Open {
    NodeRecord* element;
    NodeRecord* last; // child, so far
  };

  NodeRecord& makeElement(std::string_view name, std::span<const Attribute> attributes) {
    NodeRecord record;
    record.characters = name.data();
    record.length = static_cast<std::uint32_t>(name.size());
    record.attributes = attributes.empty() ? nullptr : nodes_.copyAll(attributes);
    record.count = static_cast<std::uint32_t>(attributes.size());
    return nodes_.make(record);
  }

  void append(NodeRecord& node) {
    Open& parent = open_.back();
    (parent.last ? parent.last->next : parent.element->firstChild) = &node;
    parent.last = &node;
  }

  Arena& nodes_;
  std::vector<Open> open_;
};

} // namespace tabwright::html
