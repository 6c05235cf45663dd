#include "html/Cleaner.h"

#include "html/Arena.h"

#include <vector>

/// One walk over the page, building the clean tree beside it: an element that stays becomes the place where the nodes
/// in it go, one that doesn't leaves the place as it is. The tree's depth is bounded, so the walk recurses.
namespace tabwright::html {

namespace {

class CleanCopy {
public:
  explicit CleanCopy(Arena& nodes) : nodes_(nodes) {}

  NodeRecord& appendElement(std::string_view name, std::span<const Attribute> attributes, NodeRecord* parent) {
    NodeRecord record;
    record.name = name;
    record.attributeCount = attributes.size();
    record.attributes = attributes.empty() ? nullptr : nodes_.copyAll(attributes);
    return append(record, parent);
  }

  void appendCleaned(const Node& node, const AllowList& list, NodeRecord& parent) {
    if (node.isText()) {
      NodeRecord record;
      record.text = node.wholeText();
      record.collapsed = node.text();
      append(record, &parent);
      return;
    }
    NodeRecord* place = &parent;
    if (list.allowsTag(node.name())) {
      allowed_.clear();
      for (const Attribute& attribute : node.attributes())
        if (list.allowsAttribute(node.name(), attribute.name, attribute.value))
          allowed_.push_back(attribute);
      place = &appendElement(node.name(), allowed_, &parent);
    }
    for (const Node child : node.children())
      appendCleaned(child, list, *place);
  }

private:
  NodeRecord& append(NodeRecord record, NodeRecord* parent) {
    NodeRecord& made = nodes_.make(record);
    if (parent) {
      (parent->lastChild ? parent->lastChild->next : parent->firstChild) = &made;
      parent->lastChild = &made;
    }
    return made;
  }

  Arena& nodes_;
  std::vector<Attribute> allowed_;
};

} // namespace

Document Cleaner::clean(const Document& page) const {
  auto nodes = std::make_unique<Arena>();
  CleanCopy copy(*nodes);
  NodeRecord& root = copy.appendElement("html", {}, nullptr);
  NodeRecord& head = copy.appendElement("head", {}, &root);
  NodeRecord& body = copy.appendElement("body", {}, &root);
  for (const Node part : page.root().children()) {
    if (part.name() == "head") {
      for (const Node child : part.children())
        if (!child.isText() && head_.allowsTag(child.name()))
          copy.appendCleaned(child, head_, head);
    } else if (part.name() == "body") {
      for (const Node child : part.children())
        copy.appendCleaned(child, body_, body);
    }
  }
  return Document(page.texts_, std::move(nodes), root);
}

} // namespace tabwright::html
