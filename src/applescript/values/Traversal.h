#pragma once

#include "applescript/values/Value.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace tabwright::applescript {

/// Bounds a recursive walk over a value: lists may be nested as deep as a script likes, may share their parts so that a
/// few of them unfold to billions, and may even come to hold themselves.
///
/// Made at each level of the walk, before the level's values are looked at, and kept until they have been. Throws
/// ScriptError −2706 when the walk gets too deep and −108 when it takes too many steps in all. Walks of one thread
/// count together while one is inside the other.
class Traversal {
public:
  Traversal();
  ~Traversal() { --depth; }
  Traversal(const Traversal&) = delete;
  Traversal& operator=(const Traversal&) = delete;

  /// Levels, one inside the other.
  static constexpr std::size_t deepest = 400;
  static constexpr std::size_t mostSteps = std::size_t{1} << 20; ///< lists and records walked into

private:
  static thread_local std::size_t depth;
  static thread_local std::size_t steps;
};

/// A list or record made anew of what `part` makes of each of its values, in order; nothing for a value that is
/// neither. Counts as one level of a walk; `part` may recurse.
///
///     return rebuilt(value, [](const Value& part) { return part.deepCopy(); }).value_or(value);
template <class Part>
[[nodiscard]] std::optional<Value> rebuilt(const Value& value, Part part) {
  if (const auto* list = value.get<Value::ListPointer>()) {
    const Traversal traversal;
    auto copy = std::make_shared<List>();
    copy->items.reserve((*list)->items.size());
    for (const Value& item : (*list)->items)
      copy->items.push_back(part(item));
    return copy;
  }
  if (const auto* record = value.get<Value::RecordPointer>()) {
    const Traversal traversal;
    auto copy = std::make_shared<Record>();
    copy->fields.reserve((*record)->fields.size());
    for (const auto& [label, field] : (*record)->fields)
      copy->fields.emplace_back(label, part(field));
    return copy;
  }
  return {};
}

} // namespace tabwright::applescript
