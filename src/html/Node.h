#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>

namespace tabwright::html {

/// An attribute: its name in lower case, and its value with character references replaced.
struct Attribute {
  std::string_view name;
  std::string_view value;
  friend bool operator==(const Attribute&, const Attribute&) = default;
};

/// A node as its document stores it: small, since there are many. Only `Document` and `Cleaner` make these; all others
/// read `Node`.
struct NodeRecord {
  NodeRecord* next = nullptr;       ///< the sibling behind it
  const char* characters = nullptr; ///< an element's name, a text as it stands in the page
  NodeRecord* firstChild = nullptr; ///< of an element
  union {
    const Attribute* attributes = nullptr; ///< of an element
    const char* collapsed;                 ///< of a text: with runs of white space collapsed
  };
  std::uint32_t length = 0; ///< of `characters`
  std::uint32_t count = 0;  ///< of attributes, or of characters in `collapsed`
  bool isText = false;
};

/// A node of a document: an element or a text. Comments and doctypes are no nodes here.
///
/// A view as small as a pointer, copied freely; it and all texts that it gives live as long as its `Document`. Reading
/// never fails and never allocates, from any thread.
class Node {
public:
  class Children;

  /// A view of a record that its document keeps.
  explicit Node(const NodeRecord& record) : record_(&record) {}

  [[nodiscard]] bool isText() const { return record_->isText; }

  /// An element's tag name in lower case; "#text" of a text node.
  [[nodiscard]] std::string_view name() const { return isText() ? std::string_view("#text") : characters(); }

  /// The text of a text node with each run of white space (the five characters that HTML calls so) made one blank;
  /// blanks at the ends stay. Empty for elements.
  [[nodiscard]] std::string_view text() const {
    return isText() ? std::string_view(record_->collapsed, record_->count) : std::string_view();
  }

  /// The text of a text node as it stands in the page, for elements that keep white space. Empty for elements.
  [[nodiscard]] std::string_view wholeText() const { return isText() ? characters() : std::string_view(); }

  /// An element's attributes, in the page's order.
  [[nodiscard]] std::span<const Attribute> attributes() const {
    return isText() ? std::span<const Attribute>() : std::span(record_->attributes, record_->count);
  }

  /// The value of an attribute (its name in lower case); nothing when the element doesn't have it.
  [[nodiscard]] std::optional<std::string_view> attribute(std::string_view name) const;

  /// The nodes in it, in order: `for (const html::Node child : node.children())`.
  [[nodiscard]] Children children() const;

private:
  [[nodiscard]] std::string_view characters() const { return {record_->characters, record_->length}; }

  const NodeRecord* record_;
};

/// A range of siblings, to be walked over: as small as a pointer and copied as freely. Finding the count means the
/// walk.
class Node::Children {
public:
  /// A forward iterator; it yields nodes by value.
  class Iterator {
  public:
    using value_type = Node;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::forward_iterator_tag;

    Iterator() = default;
    explicit Iterator(const NodeRecord* record) : record_(record) {}
    Node operator*() const { return Node(*record_); }
    Iterator& operator++() {
      record_ = record_->next;
      return *this;
    }
    Iterator operator++(int) {
      const Iterator before = *this;
      record_ = record_->next;
      return before;
    }
    friend bool operator==(const Iterator&, const Iterator&) = default;

  private:
    const NodeRecord* record_ = nullptr;
  };

  explicit Children(const NodeRecord* first) : first_(first) {}
  [[nodiscard]] Iterator begin() const { return Iterator(first_); }
  [[nodiscard]] Iterator end() const { return {}; }
  /// True for an element without content, and for a text.
  [[nodiscard]] bool empty() const { return first_ == nullptr; }
  /// Undefined when there are none.
  [[nodiscard]] Node front() const { return Node(*first_); }

private:
  const NodeRecord* first_;
};

inline Node::Children Node::children() const {
  return Children(record_->firstChild);
}

} // namespace tabwright::html
