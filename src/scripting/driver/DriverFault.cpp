#include "platform/BrowserTable.h"
#include "scripting/driver/BrowserDriver.h"

#include <fmt/core.h>

#include <string_view>

namespace tabwright::scripting {

namespace {

/// The command that starts a browser to drive; the table knows the browser by the name that the fault carries.
std::string startCommand(const std::string& browserName) {
  for (const platform::BrowserFacts& facts : platform::browserTable) {
    if (facts.name == browserName)
      return fmt::format("“tabwright browser {}”", facts.shortName);
  }
  return "“tabwright browser NAME”";
}

std::string_view orBrowser(const std::string& name) {
  return name.empty() ? std::string_view("The browser") : name;
}

std::string withReason(std::string_view sentence, const std::string& reason) {
  return reason.empty() ? fmt::format("{}.", sentence) : fmt::format("{}: {}.", sentence, reason);
}

} // namespace

std::string errorDescription(DriverFault fault, const std::string& detail) {
  switch (fault) {
  case DriverFault::notRunning:
    return fmt::format("{} isn’t running. Start it with {}, or with the switch --remote-debugging-port=0.",
                       orBrowser(detail), startCommand(detail));
  case DriverFault::notAccepting:
    // Whoever shows this looks for both “JavaScript” and “Apple Events” in it.
    return fmt::format("{} doesn’t allow JavaScript from Apple Events: remote debugging is off in it. Switch it on at "
                       "chrome://inspect/#remote-debugging, or start a browser that allows it with {}.",
                       orBrowser(detail), startCommand(detail));
  case DriverFault::unreachable:
    return fmt::format("The browser can’t be reached at its debugging port: {}. End it and start it again, or start "
                       "another with {}.",
                       detail, startCommand({}));
  case DriverFault::lost:
    return withReason("The connection to the browser was lost", detail);
  case DriverFault::notAnswering:
    return fmt::format(
        "The browser has answered nothing at all for {}. It is frozen, or very busy: look at its windows, "
        "or end it and start it again.",
        detail);
  case DriverFault::noSuchTab:
    return fmt::format("There is no tab with the id {}.", detail);
  case DriverFault::noSuchWindow:
    return fmt::format("There is no window with the id {}.", detail);
  case DriverFault::tabClosed:
    return "The tab was closed before it could answer.";
  case DriverFault::tabCrashed:
    return "The tab’s page has crashed. Reload it.";
  case DriverFault::dialogOpen:
    return fmt::format("The page shows a dialog and answers nothing until it is closed: “{}”.", detail);
  case DriverFault::timedOut:
    return "The browser did not answer in time. Its page may be busy, show a dialog, or not have come yet.";
  case DriverFault::stopped:
    return "Waiting for the browser was stopped.";
  case DriverFault::refused:
    return withReason("The browser refused", detail);
  case DriverFault::malformedAnswer:
    return fmt::format("The browser gave an answer that isn’t understood: {}.", detail);
  }
  return "The browser failed.";
}

platform::FailureIdentity identity(DriverFault fault) {
  const auto name = [fault] {
    switch (fault) {
    case DriverFault::notRunning:
      return "notRunning";
    case DriverFault::notAccepting:
      return "notAccepting";
    case DriverFault::unreachable:
      return "unreachable";
    case DriverFault::lost:
      return "lost";
    case DriverFault::notAnswering:
      return "notAnswering";
    case DriverFault::noSuchTab:
      return "noSuchTab";
    case DriverFault::noSuchWindow:
      return "noSuchWindow";
    case DriverFault::tabClosed:
      return "tabClosed";
    case DriverFault::tabCrashed:
      return "tabCrashed";
    case DriverFault::dialogOpen:
      return "dialogOpen";
    case DriverFault::timedOut:
      return "timedOut";
    case DriverFault::stopped:
      return "stopped";
    case DriverFault::refused:
      return "refused";
    case DriverFault::malformedAnswer:
      return "malformedAnswer";
    }
    return "";
  };
  return {"DriverFault", name(), std::nullopt};
}

} // namespace tabwright::scripting
