#include "automation/MenuTree.h"

#include "automation/MenuSource.h"

#include <cstddef>
#include <utility>

namespace tabwright::automation {

namespace {

constexpr std::size_t mostLevelsOfMenus = 32; ///< of items and menus in turn

} // namespace

MenuTree readMenuTree(const AxeElement& root) {
  MenuTree tree{root, {}};
  std::vector<MenuTree*> level{&tree};
  for (std::size_t depth = 0; depth < mostLevelsOfMenus && !level.empty(); ++depth) {
    std::vector<AxeElement> elements;
    elements.reserve(level.size());
    for (const MenuTree* each : level)
      elements.push_back(each->element);
    auto lists = root.facts().source->children(elements);
    if (!lists)
      break;
    std::vector<MenuTree*> below;
    for (std::size_t each = 0; each < level.size(); ++each) {
      for (AxeElement& child : (*lists)[each])
        level[each]->children.push_back({std::move(child), {}});
      // Only once all children of a node are there, since growing the list moves them.
      for (MenuTree& child : level[each]->children)
        below.push_back(&child);
    }
    level = std::move(below);
  }
  return tree;
}

} // namespace tabwright::automation
