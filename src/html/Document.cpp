#include "html/Document.h"

#include "html/Arena.h"
#include "html/BoundedMarkup.h"
#include "html/ParseFault.h"
#include "platform/AsciiCase.h"

#include <algorithm>
#include <gumbo.h>
#include <vector>

/// gumbo builds the tree, from markup that has been bounded; this file copies it into a document's own nodes and gives
/// gumbo's memory back. The copy goes through gumbo's tree without recursion, by its links to parents.
namespace tabwright::html {

namespace {

struct OutputDeleter {
  void operator()(GumboOutput* output) const { gumbo_destroy_output(&kGumboDefaultOptions, output); }
};

constexpr bool isSpace(char character) {
  return character == ' ' || character == '\n' || character == '\t' || character == '\r' || character == '\f';
}

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
  char* const begin = arena.allocate(text.size());
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

/// An element's tag name: gumbo's own for those that it knows, else the source's, in lower case.
std::string_view tagName(const GumboElement& element, Arena& arena) {
  if (element.tag != GUMBO_TAG_UNKNOWN)
    return gumbo_normalized_tagname(element.tag);
  GumboStringPiece piece = element.original_tag;
  gumbo_tag_from_original_text(&piece);
  const std::string name = platform::lowercased({piece.data, piece.length});
  return name.empty() ? std::string_view("span") : arena.copy(name);
}

class TreeCopy {
public:
  TreeCopy(Arena& texts, Arena& nodes) : texts_(texts), nodes_(nodes) {}

  const NodeRecord& copy(const GumboNode& root) {
    NodeRecord& result = nodes_.make(element(root.v.element));
    parents_.push_back(&result);
    for (const GumboNode* node = &root; (node = following(*node, root));) {
      if (node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE) {
        if (!isFull())
          append(element(node->v.element));
      } else if (node->type != GUMBO_NODE_COMMENT && node->type != GUMBO_NODE_DOCUMENT) {
        append(text(node->v.text.text));
      }
    }
    return result;
  }

private:
  /// The node behind `node` in document order, with `parents_` led along; null behind the last one in `root`.
  const GumboNode* following(const GumboNode& node, const GumboNode& root) {
    if (const GumboVector* children = childrenOf(node); children && children->length > 0) {
      if (&node != &root)
        descend();
      return static_cast<const GumboNode*>(children->data[0]);
    }
    for (const GumboNode* place = &node; place != &root; place = place->parent) {
      if (place != &node)
        ascend();
      const GumboVector& siblings = *childrenOf(*place->parent);
      if (place->index_within_parent + 1 < siblings.length)
        return static_cast<const GumboNode*>(siblings.data[place->index_within_parent + 1]);
    }
    return nullptr;
  }

  static const GumboVector* childrenOf(const GumboNode& node) {
    const bool isElement = node.type == GUMBO_NODE_ELEMENT || node.type == GUMBO_NODE_TEMPLATE;
    return isElement ? &node.v.element.children : nullptr;
  }

  // The markup was bounded, but implied elements may lie one or two levels deeper: their content goes where they stood.
  [[nodiscard]] bool isFull() const { return parents_.size() >= static_cast<std::size_t>(Document::maximumDepth); }
  void descend() { parents_.push_back(isFull() ? parents_.back() : parents_.back()->lastChild); }
  void ascend() { parents_.pop_back(); }

  void append(const NodeRecord& record) {
    NodeRecord& made = nodes_.make(record);
    NodeRecord& parent = *parents_.back();
    (parent.lastChild ? parent.lastChild->next : parent.firstChild) = &made;
    parent.lastChild = &made;
  }

  NodeRecord element(const GumboElement& element) {
    attributes_.clear();
    for (unsigned index = 0; index < element.attributes.length; ++index) {
      const auto& attribute = *static_cast<const GumboAttribute*>(element.attributes.data[index]);
      attributes_.push_back({texts_.copy(attribute.name), texts_.copy(attribute.value)});
    }
    NodeRecord record;
    record.name = tagName(element, texts_);
    record.attributeCount = attributes_.size();
    record.attributes = attributes_.empty() ? nullptr : texts_.copyAll(std::span<const Attribute>(attributes_));
    return record;
  }

  NodeRecord text(const char* characters) {
    NodeRecord record;
    record.text = texts_.copy(characters);
    record.collapsed = collapsed(record.text, texts_);
    return record;
  }

  Arena& texts_;
  Arena& nodes_;
  std::vector<NodeRecord*> parents_;
  std::vector<Attribute> attributes_;
};

} // namespace

Document::Document(std::shared_ptr<Arena> texts, std::unique_ptr<Arena> nodes, const NodeRecord& root)
    : texts_(std::move(texts)), nodes_(std::move(nodes)), root_(&root) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

Document Document::parse(std::string_view text) {
  if (text.size() > maximumLength)
    throw ParseFault(text.size(), maximumLength);
  const std::string markup = boundedMarkup(text);
  GumboOptions options = kGumboDefaultOptions;
  options.max_errors = 0; // each would hold a copy of the stack of open elements
  const std::unique_ptr<GumboOutput, OutputDeleter> output(
      gumbo_parse_with_options(&options, markup.data(), markup.size()));
  auto texts = std::make_shared<Arena>();
  auto nodes = std::make_unique<Arena>();
  const NodeRecord& root = TreeCopy(*texts, *nodes).copy(*output->root);
  return Document(std::move(texts), std::move(nodes), root);
}

std::optional<std::string_view> Node::attribute(std::string_view name) const {
  for (const Attribute& attribute : attributes())
    if (attribute.name == name)
      return attribute.value;
  return std::nullopt;
}

} // namespace tabwright::html
