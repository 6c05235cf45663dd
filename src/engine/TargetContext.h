#pragma once

#include <functional>
#include <string>

namespace tabwright::engine {

/// The browser that an action aims at.
///
/// `id` is a bundle identifier in lower case, or ".focussed" for whichever browser is frontmost. Identity covers the
/// name too: a browser under another name is another target.
struct TargetContext {
  std::string id;
  /// For users: "Chromium".
  std::string name;

  friend bool operator==(const TargetContext&, const TargetContext&) = default;
};

/// The promise of a browser: resolved when an action runs.
[[nodiscard]] inline TargetContext frontmostTargetContext() {
  return {".focussed", "frontmost browser"};
}

} // namespace tabwright::engine

template <>
struct std::hash<tabwright::engine::TargetContext> {
  std::size_t operator()(const tabwright::engine::TargetContext& context) const noexcept {
    const std::hash<std::string> hash;
    return hash(context.id) * 31 + hash(context.name);
  }
};
