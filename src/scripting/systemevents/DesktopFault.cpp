#include "scripting/systemevents/DesktopFault.h"

#include "platform/FailureTable.h"

#include <fmt/core.h>

namespace tabwright::scripting {
namespace {

using enum DesktopFault;
constexpr platform::FailureTable<DesktopFault, 4> table{
    "DesktopFault",
    {
        {menusUnavailable, "menusUnavailable", "Reading menus is not available on this desktop yet."},
        {keysUnavailable, "keysUnavailable", "Pressing keys is not available on this desktop yet."},
        {noWindowSystem, "noWindowSystem",
         "There is no window system here, so no application can be shown, hidden or brought to the front."},
        {noWindow, "noWindow", "{} has no window that could be shown, hidden or brought to the front."},
    }};

} // namespace

std::string errorDescription(DesktopFault fault, const std::string& detail) {
  return fmt::format(fmt::runtime(table[fault].sentence), detail);
}

platform::FailureIdentity identity(DesktopFault fault) {
  return table.identity(fault);
}

} // namespace tabwright::scripting
