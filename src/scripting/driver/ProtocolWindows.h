#pragma once

#include "devtools/Connection.h"
#include "scripting/driver/BrowserCommand.h"

namespace tabwright::scripting {

// Windows by the protocol's own calls, which all browsers take alike. They return when the browser has taken the
// change, and throw DriverFailure (`noSuchWindow`, `refused`) and DevToolsFailure. A call without deadline ends by the
// connection's own bound.

/// Moves a window and gives it another size, in device-independent pixels. Ends its being minimised or full screen.
void setBounds(devtools::Connection& connection, const SetBounds& command, const CallLimits& limits);
/// Minimises a window, lets it fill the screen, or gives it its normal shape.
void setShape(devtools::Connection& connection, const SetShape& command, const CallLimits& limits);

/// Closes a window of developer tools, which the helper sees but may not close. False when the window is none.
bool closeDeveloperTools(devtools::Connection& connection, WindowID window, const CallLimits& limits);

} // namespace tabwright::scripting
