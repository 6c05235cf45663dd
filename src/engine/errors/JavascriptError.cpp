#include "engine/errors/JavascriptError.h"

#include "platform/FailureTable.h"
#include "platform/StringCatalogue.h"

namespace tabwright::engine {
namespace {

using enum JavascriptError;
constexpr platform::FailureTable<JavascriptError, 2> javascriptErrors{
    "JavascriptError",
    {{syntaxException, "syntaxException", "enum.JavascriptError.syntaxException %@"},
     {unableToParseJS, "unableToParseJS", "enum.JavascriptError.unableToParseJS"}}};

} // namespace

std::string errorDescription(JavascriptError error, const std::string& detail) {
  return platform::localizedFormat(javascriptErrors[error].sentence, {detail});
}

platform::FailureIdentity identity(JavascriptError error) {
  return javascriptErrors.identity(error);
}

} // namespace tabwright::engine
