#include "targets/TargetContextQuery.h"

#include <algorithm>

namespace tabwright::targets {

std::vector<TargetContext> TargetContextQuery::entities(std::span<const std::string> ids) const {
  std::vector<TargetContext> found;
  for (const TargetContextManager::AppSection& section : manager_.sections({})) {
    std::ranges::copy_if(section.items, std::back_inserter(found),
                         [&](const TargetContext& context) { return std::ranges::find(ids, context.id) != ids.end(); });
  }
  return found;
}

} // namespace tabwright::targets
