// Each fault has the number under which AppleScript knows the case. Where scripts and the engine tell a case by its
// whole sentence (a tab or window that isn't there, a timeout, a stop), AppleScript's own replaces the driver's; all
// others keep the driver's, since only that says what to do.
#include "scripting/browser/DriverErrors.h"

#include "applescript/values/Errors.h"

#include <fmt/core.h>

#include <string>

namespace tabwright::scripting {

using applescript::ScriptError;
namespace errorNumber = applescript::errorNumber;
namespace errors = applescript::errors;

namespace {

/// The engine searches the text of an error for these signs of a missing object.
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
  case DriverFault::profileNotReached:
    return errors::of(errorNumber::applicationNotRunning, sentence);
  case DriverFault::notAccepting:
  case DriverFault::scriptsNotAllowed:
    return errors::of(errorNumber::notAuthorised, sentence);
  case DriverFault::unreachable:
  case DriverFault::lost:
  case DriverFault::notAnswering:
    return errors::of(errorNumber::connectionInvalid, sentence);
  case DriverFault::noSuchTab:
    return errors::cannotGet(fmt::format("tab id \"{}\"", failure.detail()));
  case DriverFault::noSuchWindow:
    return errors::cannotGet(fmt::format("window id \"{}\"", failure.detail()));
  case DriverFault::timedOut:
    return errors::of(errorNumber::timedOut, "AppleEvent timed out.");
  case DriverFault::stopped:
    return errors::userCancelled();
  case DriverFault::tabClosed:
  case DriverFault::tabCrashed:
  case DriverFault::dialogOpen:
  case DriverFault::refused:
  case DriverFault::malformedAnswer:
    return errors::of(errorNumber::handlerFailed, sentence);
  }
  return errors::of(errorNumber::handlerFailed, sentence);
}

} // namespace

ScriptError scriptError(const DriverFailure& failure) {
  ScriptError error = inTheLanguage(failure);
  error.setCause(platform::asCause(failure));
  return error;
}

} // namespace tabwright::scripting
