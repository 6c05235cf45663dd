#pragma once

#include "engine/TargetContext.h"
#include "platform/Task.h"

namespace tabwright::engine {

class Scriptacular;

/// Finds the browser that `frontmostTargetContext` stands for at this moment.
class FrontmostResolver {
public:
  virtual ~FrontmostResolver() = default;

  /// Runs the lookup by `scriptacular`'s own `runScriptText` and yields the browser. Throws what that throws, and
  /// `AppleScriptRuntimeError::frontAppIsNotABrowser` when there is none. It doesn't change `scriptacular`.
  virtual platform::Task<TargetContext> resolve(Scriptacular& scriptacular) = 0;
};

} // namespace tabwright::engine
