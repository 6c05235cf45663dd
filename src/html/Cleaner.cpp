#include "html/Cleaner.h"

#include "html/TreeBuilder.h"

#include <vector>

/// One walk over the page, building the clean tree beside it: an element that stays is opened there, one that doesn't
/// gives its nodes to the element that is open. The tree's depth is bounded, so the walk recurses.
namespace tabwright::html {

namespace {

class CleanCopy {
public:
  explicit CleanCopy(TreeBuilder& tree) : tree_(tree) {}

  void add(const Node& node, const AllowList& list) {
    if (node.isText())
      return tree_.addText(node.wholeText(), node.text());
    const bool isAllowed = list.allowsTag(node.name());
    if (isAllowed) {
      allowed_.clear();
      for (const Attribute& attribute : node.attributes())
        if (list.allowsAttribute(node.name(), attribute.name, attribute.value))
          allowed_.push_back(attribute);
      tree_.openElement(node.name(), allowed_);
    }
    for (const Node child : node.children())
      add(child, list);
    if (isAllowed)
      tree_.close();
  }

private:
  TreeBuilder& tree_;
  std::vector<Attribute> allowed_;
};

} // namespace

Document Cleaner::clean(const Document& page) const {
  auto nodes = std::make_unique<Arena>();
  TreeBuilder tree(*nodes);
  CleanCopy copy(tree);
  const NodeRecord& root = tree.begin("html", {});
  for (const auto& [name, list] : {std::pair("head", &head_), std::pair("body", &body_)}) {
    tree.openElement(name, {});
    for (const Node part : page.root().children())
      if (part.name() == name)
        for (const Node child : part.children())
          if (list == &body_ || (!child.isText() && list->allowsTag(child.name())))
            copy.add(child, *list);
    tree.close();
  }
  return Document(page.texts_, std::move(nodes), root);
}

} // namespace tabwright::html
