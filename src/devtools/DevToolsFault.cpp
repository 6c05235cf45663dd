#include "devtools/DevToolsFault.h"

#include "platform/FailureTable.h"

#include <fmt/core.h>

namespace tabwright::devtools {
namespace {

using enum DevToolsFault;
constexpr platform::FailureTable<DevToolsFault, 9> table{
    "DevToolsFault",
    {
        {unreachable, "unreachable", "The browser could not be reached: {}.", platform::FailureClass::unreachable},
        {lost, "lost", "The connection to the browser was lost: {}.", platform::FailureClass::unreachable},
        {notAnswering, "notAnswering", "The browser has answered nothing at all for {}.",
         platform::FailureClass::unreachable},
        {refused, "refused", "The browser refused: {}."},
        {timedOut, "timedOut", "The browser did not answer in time: {}."},
        {stopped, "stopped", "Waiting for the browser was stopped."},
        {targetGone, "targetGone", "The page was closed."},
        {targetCrashed, "targetCrashed", "The page has crashed."},
        {dialogOpen, "dialogOpen", "The page shows a dialog: “{}”."},
    }};

} // namespace

std::string errorDescription(DevToolsFault fault, const std::string& detail) {
  return fmt::format(fmt::runtime(table[fault].sentence), detail);
}

platform::FailureIdentity identity(DevToolsFault fault) {
  return table.identity(fault);
}

} // namespace tabwright::devtools
