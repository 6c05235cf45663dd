#pragma once

#include "engine/JavascriptSyntaxValidator.h"
#include "platform/Mutex.h"

#include <memory>

namespace tabwright::engine {

/// The validator over WebKit's JavaScriptCore. The library is loaded at the first call, so that a program that
/// validates nothing doesn't pay for it; where it isn't installed, every call throws a `Failure` that names it.
class JavaScriptCoreSyntaxValidator final : public JavascriptSyntaxValidator {
public:
  /// Loads nothing yet.
  JavaScriptCoreSyntaxValidator();
  ~JavaScriptCoreSyntaxValidator() override;

  [[nodiscard]] std::optional<std::string> validateJavascript(std::string_view js) override;

private:
  class Engine;
  platform::Mutex mutex_;
  std::unique_ptr<Engine> engine_ GUARDED_BY(mutex_); ///< once it is needed
};

} // namespace tabwright::engine
