#pragma once

#include "platform/WindowSystem.h"

#include <vector>

struct xcb_connection_t;

namespace tabwright::platform {

/// Fills in the process of each window that doesn't tell it itself, as the display server knows it of the connection
/// that has made the window (X Resource Extension 1.2, QueryClientIds). Windows from other machines, and all where the
/// server can't tell, keep 0. One round trip, and none when nothing is missing.
void tellProcesses(xcb_connection_t* connection, std::vector<ClientWindow>& windows);

} // namespace tabwright::platform
