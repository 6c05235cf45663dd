#include "applescript/evaluate/Script.h"

#include "applescript/evaluate/Resolver.h"

#include <algorithm>

namespace tabwright::applescript {

Script::Script(std::unique_ptr<SyntaxTree> tree) : tree_(std::move(tree)), layouts_(resolve(*tree_)) {
  object_ = instantiate(*layouts_.front(), nullptr);
}

Script::~Script() {
  for (const auto& instance : instances_) {
    if (const auto object = instance.lock())
      object->clear();
  }
}

std::shared_ptr<ScriptObject> Script::instantiate(const ScriptLayout& layout, std::shared_ptr<ScriptObject> enclosing) {
  auto object = std::make_shared<ScriptObject>(layout, layout.name, layout.variables.size(), std::move(enclosing));
  // Swept each time the list has doubled, so that a loop that makes script objects doesn't walk it each time.
  if (instances_.size() >= sweepAt_) {
    std::erase_if(instances_, [](const auto& instance) { return instance.expired(); });
    sweepAt_ = std::max<std::size_t>(64, instances_.size() * 2);
  }
  instances_.push_back(object);
  return object;
}

} // namespace tabwright::applescript
