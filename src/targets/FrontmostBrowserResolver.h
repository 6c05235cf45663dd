#pragma once

#include "engine/FrontmostResolver.h"
#include "targets/TargetContextManager.h"

namespace tabwright::targets {

/// Finds the browser meant by "frontmost" with a lookup script: the frontmost application when it is an installed
/// supported browser, else the application just behind it. In the latter case the front application is hidden for about
/// 0.2 seconds and comes back. Nothing is kept: each call runs the script anew.
class FrontmostBrowserResolver final : public engine::FrontmostResolver {
public:
  /// `manager` outlives the resolver.
  explicit FrontmostBrowserResolver(const TargetContextManager& manager) : manager_(manager) {}

  /// The table's entry of that browser. Throws `ScriptacularError::browserNotFound`, with the cause that nothing is in
  /// front, and `AppleScriptRuntimeError::frontAppIsNotABrowser`; and whatever the lookup's script fails with.
  platform::Task<engine::TargetContext> resolve(engine::Scriptacular& scriptacular) override;

private:
  const TargetContextManager& manager_;
};

} // namespace tabwright::targets
