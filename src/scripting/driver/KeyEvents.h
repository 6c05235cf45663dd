#pragma once

#include "devtools/Session.h"
#include "scripting/driver/BrowserCommand.h"

namespace tabwright::scripting {

/// Plays the command's keys to a page, and returns when the page has taken them all. False, and nothing was played,
/// when the page hasn't the keyboard. Modifiers are attributes of each key's events; no key is pressed for them, so
/// none can stay pressed. Throws DevToolsFailure.
bool playKeys(devtools::Session& page, const PlayKeys& command, const platform::CallLimits& limits);

} // namespace tabwright::scripting
