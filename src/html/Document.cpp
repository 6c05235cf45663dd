#include "html/Document.h"

#include "html/ParseFault.h"
#include "html/TreeConstruction.h"
#include "platform/Utf8.h"

namespace tabwright::html {

Document::Document(std::shared_ptr<Arena> texts, std::unique_ptr<Arena> nodes, const NodeRecord& root)
    : texts_(std::move(texts)), nodes_(std::move(nodes)), root_(&root) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

Document Document::parse(std::string_view text) {
  if (text.size() > maximumLength)
    throw ParseFault(ParseFault::Bound::bytes, maximumLength);
  auto texts = std::make_shared<Arena>();
  auto nodes = std::make_unique<Arena>();
  // Checked first, since nearly all pages are well formed and need no copy.
  const std::string mended = platform::malformedByte(text) ? platform::wellFormed(std::string(text)) : std::string();
  const NodeRecord& root = TreeConstruction(mended.empty() ? text : mended, *texts, *nodes).run();
  return Document(std::move(texts), std::move(nodes), root);
}

std::optional<std::string_view> Node::attribute(std::string_view name) const {
  for (const Attribute& attribute : attributes())
    if (attribute.name == name)
      return attribute.value;
  return std::nullopt;
}

} // namespace tabwright::html
