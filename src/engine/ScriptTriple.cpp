#include "engine/ScriptTriple.h"

#include "engine/errors/AppleScriptRuntimeError.h"
#include "engine/errors/ScriptacularError.h"
#include "platform/Logger.h"

namespace tabwright::engine {
namespace {

const platform::Logger tripleLog("Scriptacular");

} // namespace

ScriptTriple ScriptTriple::decode(const platform::AppleEventDescriptor& result) {
  if (result.numberOfItems() < 2) {
    tripleLog.error("resultEventDescriptor.numberOfItems: {}", result.numberOfItems());
    throw platform::failure(ScriptacularError::malformedScriptResult);
  }
  const auto flag = result.descriptorAtIndex(1);
  const auto version = result.descriptorAtIndex(2);
  const auto payload = result.descriptorAtIndex(3);
  if (!flag || !version || !payload) {
    tripleLog.error("Malformed script result: {}", result.description());
    throw platform::failure(ScriptacularError::malformedScriptResult);
  }
  const bool isSuccess = flag->booleanValue();
  if (tripleLog.isOn(platform::LogLevel::debug))
    tripleLog.debug("Success?: {}, browser version: {}, payload: {}", isSuccess, version->description(),
                    payload->description());
  // The number's descriptor gives 0 where it is none, which is a case like any other.
  if (!isSuccess) {
    const auto error = appleScriptRuntimeErrorWithRawValue(payload->int32Value());
    throw platform::failure(error.value_or(AppleScriptRuntimeError::unknownError));
  }
  const std::optional<std::string> text = payload->stringValue();
  if (!text) {
    tripleLog.error("Malformed script result: {}", result.description());
    throw platform::failure(ScriptacularError::malformedScriptResult);
  }
  return {.browserVersion = version->stringValue(), .payload = *text};
}

} // namespace tabwright::engine
