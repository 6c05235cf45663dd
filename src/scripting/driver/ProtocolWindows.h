#pragma once

#include "devtools/Connection.h"
#include "scripting/driver/BrowserCommand.h"

namespace tabwright::scripting {

// Windows by the protocol's own calls, which all browsers take alike. They throw DriverFailure and DevToolsFailure.

void setBounds(devtools::Connection& connection, const SetBounds& command, const CallLimits& limits);
void setShape(devtools::Connection& connection, const SetShape& command, const CallLimits& limits);

/// Closes a window of developer tools, which the helper sees but may not close. False when the window is none.
bool closeDeveloperTools(devtools::Connection& connection, WindowID window, const CallLimits& limits);

} // namespace tabwright::scripting
