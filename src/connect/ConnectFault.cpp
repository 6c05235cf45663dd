#include "connect/ConnectFault.h"

#include "platform/FailureTable.h"

#include <fmt/format.h>

namespace tabwright::connect {
namespace {

using enum ConnectFault;
using platform::FailureClass;

constexpr platform::FailureTable<ConnectFault, 10> connectFaults{
    "ConnectFault",
    {
        {incomplete, "incomplete",
         "This copy of Tabwright is not complete: “{}” is missing. Install Tabwright again, whole.",
         FailureClass::system},
        {sandboxed, "sandboxed", "{}", FailureClass::unreachable},
        {linked, "linked",
         "“{}” is a symbolic link, and nothing is written through one. Put a folder in its place, or take it away, and "
         "run the command again.",
         FailureClass::system},
        {noFolder, "noFolder",
         "“{}” is not a folder, so nothing can be written in it. Move it away, and run the command again.",
         FailureClass::system},
        {foreign, "foreign",
         "“{}” belongs to another user, so nothing is changed in it. Run the command as the user whose browser it is.",
         FailureClass::system},
        {unwritable, "unwritable", "{}", FailureClass::system},
        {damagedRecord, "damagedRecord",
         "The list of connected browsers can’t be read: {}. Mend it or remove it, and run the command again.",
         FailureClass::system},
        {notInstalled, "notInstalled", "{}", FailureClass::unreachable},
        {notSeen, "notSeen", "{}", FailureClass::unreachable},
        {noScripts, "noScripts", "{}", FailureClass::unreachable},
    }};

} // namespace

std::string errorDescription(ConnectFault fault, const std::string& detail) {
  return fmt::format(fmt::runtime(connectFaults[fault].sentence), detail);
}

platform::FailureIdentity identity(ConnectFault fault) {
  return connectFaults.identity(fault);
}

} // namespace tabwright::connect
