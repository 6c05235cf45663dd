#include "engine/errors/JavascriptError.h"

#include "platform/StringCatalogue.h"

namespace tabwright::engine {

std::string errorDescription(JavascriptError error, const std::string& detail) {
  switch (error) {
  case JavascriptError::syntaxException:
    return platform::localizedFormat("enum.JavascriptError.syntaxException %@", {detail});
  case JavascriptError::unableToParseJS:
    break;
  }
  return platform::localized("enum.JavascriptError.unableToParseJS");
}

platform::FailureIdentity identity(JavascriptError error) {
  const bool isSyntax = error == JavascriptError::syntaxException;
  return {"JavascriptError", isSyntax ? "syntaxException" : "unableToParseJS", std::nullopt};
}

} // namespace tabwright::engine
