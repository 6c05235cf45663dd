#include "html/Document.h"

#include "html/BoundedMarkup.h"
#include "html/ParseFault.h"
#include "html/TreeBuilder.h"
#include "html/WhiteSpace.h"
#include "platform/AsciiCase.h"

#include <algorithm>
#include <gumbo.h>
#include <vector>

/// gumbo builds the tree, from markup that has been bounded; this file copies it into a document's own nodes and gives
/// gumbo's memory back. The copy goes through gumbo's tree without recursion, by its links to parents.
namespace tabwright::html {

namespace {

/// gumbo's memory, taken from an arena. It asks for very many pieces and gives most of them back soon: those are kept
/// by size and given out again. Each has its size in front.
class ParserMemory {
public:
  explicit ParserMemory(Arena& arena) : arena_(arena) {}

  static void* allocate(void* memory, std::size_t length) { return static_cast<ParserMemory*>(memory)->take(length); }
  static void deallocate(void* memory, void* piece) {
    if (piece)
      static_cast<ParserMemory*>(memory)->giveBack(static_cast<Piece*>(piece) - 1);
  }

private:
  union alignas(std::max_align_t) Piece {
    std::size_t sizeClass;
    Piece* next; // of those given back
  };

  // Small pieces come in steps of a unit, large ones in powers of two.
  static constexpr std::size_t smallUnits = 32;
  [[nodiscard]] static std::size_t unitsOf(std::size_t sizeClass) {
    return sizeClass <= smallUnits ? sizeClass : smallUnits << (sizeClass - smallUnits);
  }

  void* take(std::size_t length) {
    const std::size_t units = (length + sizeof(Piece) - 1) / sizeof(Piece);
    std::size_t sizeClass = units;
    if (units > smallUnits)
      sizeClass = smallUnits + static_cast<std::size_t>(std::bit_width((units - 1) / smallUnits));
    Piece*& free = free_[sizeClass];
    Piece* piece = free;
    if (piece)
      free = piece[1].next;
    else
      piece = static_cast<Piece*>(arena_.allocate((std::max<std::size_t>(1, unitsOf(sizeClass)) + 1) * sizeof(Piece)));
    piece->sizeClass = sizeClass;
    return piece + 1;
  }

  void giveBack(Piece* piece) {
    piece[1].next = free_[piece->sizeClass];
    free_[piece->sizeClass] = piece;
  }

  Arena& arena_;
  std::array<Piece*, smallUnits + 64> free_{};
};

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

/// An element's tag name: gumbo's own for those that it knows, else the source's, in lower case.
std::string_view tagName(const GumboElement& element, Arena& arena) {
  if (element.tag != GUMBO_TAG_UNKNOWN)
    return gumbo_normalized_tagname(element.tag);
  // gumbo's own reading of the source ends a name at vertical tabs too, which browsers take as part of it.
  std::string_view tag(element.original_tag.data, element.original_tag.length);
  tag.remove_prefix(std::min(tag.find_first_not_of('<'), tag.size()));
  const std::string name = platform::lowercased(tag.substr(0, tag.find_first_of(" \t\n\f\r/>")));
  return name.empty() ? std::string_view("span") : arena.copy(name);
}

class TreeCopy {
public:
  TreeCopy(Arena& texts, Arena& nodes) : texts_(texts), tree_(nodes) {}

  const NodeRecord& copy(const GumboNode& root) {
    const NodeRecord& result = tree_.begin(tagName(root.v.element, texts_), attributesOf(root.v.element));
    const GumboNode* place = &root;
    while ((place = following(*place, root))) {
      if (isElement(*place))
        enter(*place);
      else if (place->type != GUMBO_NODE_COMMENT)
        addText(place->v.text.text);
    }
    return result;
  }

private:
  static bool isElement(const GumboNode& node) {
    return node.type == GUMBO_NODE_ELEMENT || node.type == GUMBO_NODE_TEMPLATE;
  }

  /// The node behind `node` in document order, having left the elements that end before it; null behind the last one.
  const GumboNode* following(const GumboNode& node, const GumboNode& root) {
    if (isElement(node) && node.v.element.children.length > 0)
      return static_cast<const GumboNode*>(node.v.element.children.data[0]);
    for (const GumboNode* place = &node; place != &root; place = place->parent) {
      if (isElement(*place))
        leave();
      const GumboVector& siblings = place->parent->v.element.children;
      if (place->index_within_parent + 1 < siblings.length)
        return static_cast<const GumboNode*>(siblings.data[place->index_within_parent + 1]);
    }
    return nullptr;
  }

  // The markup was bounded, but implied elements may lie one or two levels deeper: their content goes where they stand.
  void enter(const GumboNode& node) {
    if (tree_.depth() < static_cast<std::size_t>(Document::maximumDepth))
      tree_.openElement(tagName(node.v.element, texts_), attributesOf(node.v.element));
    else
      ++tooDeep_;
  }

  void leave() {
    if (tooDeep_ > 0)
      --tooDeep_;
    else
      tree_.close();
  }

  const std::vector<Attribute>& attributesOf(const GumboElement& element) {
    attributes_.clear();
    for (unsigned index = 0; index < element.attributes.length; ++index) {
      const auto& attribute = *static_cast<const GumboAttribute*>(element.attributes.data[index]);
      attributes_.push_back({texts_.copy(attribute.name), texts_.copy(attribute.value)});
    }
    return attributes_;
  }

  void addText(const char* characters) {
    const std::string_view text = texts_.copy(characters);
    tree_.addText(text, collapsed(text, texts_));
  }

  Arena& texts_;
  TreeBuilder tree_;
  std::size_t tooDeep_ = 0; // elements around the node that have no room
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
    throw ParseFault(ParseFault::Bound::bytes, maximumLength);
  const std::string markup = boundedMarkup(text);
  GumboOptions options = kGumboDefaultOptions;
  options.max_errors = 0; // each would hold a copy of the stack of open elements
  Arena parserArena;
  ParserMemory memory(parserArena);
  options.allocator = ParserMemory::allocate;
  options.deallocator = ParserMemory::deallocate;
  options.userdata = &memory;
  const GumboOutput* const output = gumbo_parse_with_options(&options, markup.data(), markup.size());
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
