#pragma once

#include "platform/AppleEvent.h"

#include <optional>
#include <string>

namespace tabwright::engine {

/// The result of a script that succeeds: the second and third items of its list {success flag, browser version, JSON
/// text or failure number}.
struct ScriptTriple {
  /// Nothing when the item is no text, as when the page couldn't tell.
  std::optional<std::string> browserVersion;
  std::string payload; ///< JSON

  /// Reads a script's result, or throws what it stands for: the `AppleScriptRuntimeError` of the failure number (any
  /// number without a case is `unknownError`), or `ScriptacularError::malformedScriptResult` for a result that is no
  /// such list or whose payload is no text. Items behind the third are ignored.
  [[nodiscard]] static ScriptTriple decode(const platform::AppleEventDescriptor& result);
};

} // namespace tabwright::engine
