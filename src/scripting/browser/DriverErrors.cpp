#include "scripting/browser/DriverErrors.h"

#include "scripting/model/EventErrors.h"

#include <fmt/core.h>

#include <string>

namespace tabwright::scripting {

using applescript::ScriptError;
namespace errorNumber = applescript::errorNumber;

namespace {

std::string withoutSigns(std::string sentence) {
  for (const std::string_view sign : {"-1728", "(-27"}) {
    for (std::size_t at = sentence.find(sign); at != std::string::npos; at = sentence.find(sign, at))
      sentence.replace(sentence.find('-', at), 1, "−");
  }
  return sentence;
}

ScriptError inTheLanguage(const DriverFailure& failure) {
  const std::string sentence = withoutSigns(failure.errorDescription());
  switch (failure.kind()) {
  case DriverFault::notRunning:
    return eventError(errorNumber::applicationNotRunning, sentence);
  case DriverFault::notAccepting:
    return eventError(errorNumber::notAuthorised, sentence);
  case DriverFault::unreachable:
  case DriverFault::lost:
  case DriverFault::notAnswering:
    return eventError(errorNumber::connectionInvalid, sentence);
  case DriverFault::noSuchTab:
    return eventError(errorNumber::noSuchObject, fmt::format("Can’t get tab id \"{}\".", failure.detail()));
  case DriverFault::noSuchWindow:
    return eventError(errorNumber::noSuchObject, fmt::format("Can’t get window id \"{}\".", failure.detail()));
  case DriverFault::timedOut:
    return eventError(errorNumber::timedOut, "AppleEvent timed out.");
  case DriverFault::stopped:
    return eventError(errorNumber::userCancelled, "User canceled.");
  case DriverFault::tabClosed:
  case DriverFault::tabCrashed:
  case DriverFault::dialogOpen:
  case DriverFault::refused:
    return eventError(errorNumber::handlerFailed, sentence);
  }
  return eventError(errorNumber::handlerFailed, sentence);
}

} // namespace

ScriptError scriptError(const DriverFailure& failure) {
  ScriptError error = inTheLanguage(failure);
  error.setCause(platform::asCause(failure));
  return error;
}

} // namespace tabwright::scripting
