#include "scripting/driver/DriverFault.h"

#include "platform/BrowserTable.h"
#include "platform/FailureTable.h"

#include <fmt/core.h>

namespace tabwright::scripting {

namespace {

using enum DriverFault;
using platform::FailureClass;

// Sentences are formats of fmt. `name` is the browser's, where the detail is one; `because` the detail behind a colon,
// where there is any; `command` starts a browser that can be driven.
constexpr platform::FailureTable<DriverFault, 16> table{
    "DriverFault",
    {
        {notRunning, "notRunning",
         "{name} isn’t running. Start it with {command}, or with the switch --remote-debugging-port=0.",
         FailureClass::unreachable},
        // Whoever shows this looks for both “JavaScript” and “Apple Events” in it.
        {notAccepting, "notAccepting",
         "{name} doesn’t allow JavaScript from Apple Events: remote debugging is off in it. Switch it on at "
         "chrome://inspect/#remote-debugging, or start a browser that allows it with {command}.",
         FailureClass::unreachable},
        {scriptsNotAllowed, "scriptsNotAllowed",
         "The browser doesn’t allow JavaScript from Apple Events: “Allow User Scripts” is off in it. Switch it on at "
         "{detail}.",
         FailureClass::unreachable},
        {profileNotReached, "profileNotReached",
         "There is no profile {detail} that can be reached. “tabwright browsers” lists the profiles, and how each can "
         "be reached.",
         FailureClass::unreachable},
        {DriverFault::unreachable, "unreachable",
         "The browser can’t be reached at its debugging port: {detail}. End it and start it again, or start another "
         "with {command}.",
         FailureClass::unreachable},
        {lost, "lost", "The connection to the browser was lost{because}.", FailureClass::unreachable},
        {notAnswering, "notAnswering",
         "The browser has answered nothing at all for {detail}. It is frozen, or very busy: look at its windows, or "
         "end it and start it again.",
         FailureClass::unreachable},
        {noSuchTab, "noSuchTab", "There is no tab with the id {detail}."},
        {noSuchWindow, "noSuchWindow", "There is no window with the id {detail}."},
        {tabClosed, "tabClosed", "The tab was closed before it could answer."},
        {tabCrashed, "tabCrashed", "The tab’s page has crashed. Reload it."},
        {dialogOpen, "dialogOpen", "The page shows a dialog and answers nothing until it is closed: “{detail}”."},
        {timedOut, "timedOut",
         "The browser did not answer in time. Its page may be busy, show a dialog, or not have come yet."},
        {stopped, "stopped", "Waiting for the browser was stopped."},
        {refused, "refused", "The browser refused{because}."},
        {malformedAnswer, "malformedAnswer", "The browser gave an answer that isn’t understood: {detail}."},
    }};

/// The command that starts a browser to drive; the table knows the browser by the name that the fault carries.
std::string startCommand(const std::string& browserName) {
  for (const platform::BrowserFacts& facts : platform::browserTable) {
    if (facts.name == browserName)
      return fmt::format("“tabwright browser {}”", facts.shortName);
  }
  return "“tabwright browser NAME”";
}

} // namespace

std::string errorDescription(DriverFault fault, const std::string& detail) {
  return fmt::format(fmt::runtime(table[fault].sentence), fmt::arg("detail", detail),
                     fmt::arg("name", detail.empty() ? "The browser" : detail),
                     fmt::arg("because", detail.empty() ? "" : ": " + detail),
                     fmt::arg("command", startCommand(detail)));
}

platform::FailureIdentity identity(DriverFault fault) {
  return table.identity(fault);
}

} // namespace tabwright::scripting
