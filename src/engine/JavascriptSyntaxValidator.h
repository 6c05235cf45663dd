#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::engine {

/// Tells whether a user's JavaScript is well formed, before any page sees it.
class JavascriptSyntaxValidator {
public:
  virtual ~JavascriptSyntaxValidator() = default;

  /// Nothing for a text that can be the body of a function (so `return` is fine at its top level, `await` is not), else
  /// the text of the exception: "SyntaxError: Function statements must have a name.". The text is not run. Throws a
  /// `Failure` when the validator itself can't work. Safe to call from any thread.
  [[nodiscard]] virtual std::optional<std::string> validateJavascript(std::string_view js) = 0;
};

} // namespace tabwright::engine
