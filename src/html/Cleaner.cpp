// One walk over the page, building the clean tree beside it: an element that stays gets its copy there, one that
// doesn't gives its nodes to the element around it. The tree's depth is bounded, so the walk recurses.
#include "html/Cleaner.h"

#include "html/TreeBuilder.h"

#include <vector>

namespace tabwright::html {

namespace {

class CleanCopy {
public:
  explicit CleanCopy(TreeBuilder& tree) : tree_(tree) {}

  // Behind all that is in `parent`.
  void add(const Node& node, const AllowList& list, Element& parent) {
    if (node.isText())
      return tree_.insertText(node.wholeText(), node.text(), parent);
    // They tell of a drawing to those who don't see it, and are no part of it.
    if (node.name() == "svg title" || node.name() == "svg desc" || node.name() == "svg metadata")
      return;
    Element* inside = &parent;
    if (list.allowsTag(node.name())) {
      allowed_.clear();
      for (const Attribute& attribute : node.attributes())
        if (const auto value = list.allowedValue(node.name(), attribute.name, attribute.value))
          allowed_.push_back({attribute.name, *value});
      inside = &tree_.makeElement(node.name(), allowed_);
      tree_.insert(*inside, parent);
    }
    for (const Node child : node.children())
      add(child, list, *inside);
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
  Element& root = tree.makeElement("html", {});
  for (const auto& [name, list] : {std::pair("head", &head_), std::pair("body", &body_)}) {
    Element& clean = tree.makeElement(name, {});
    tree.insert(clean, root);
    for (const Node part : page.root().children())
      if (part.name() == name)
        for (const Node child : part.children())
          if (list == &body_ || (!child.isText() && list->allowsTag(child.name())))
            copy.add(child, *list, clean);
  }
  return Document(page.texts_, std::move(nodes), root);
}

} // namespace tabwright::html
