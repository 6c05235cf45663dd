#pragma once

#include "applescript/ScriptError.h"
#include "scripting/driver/BrowserDriver.h"

namespace tabwright::scripting {

/// A driver's failure as the error that a script sees: AppleScript's number, and either AppleScript's own sentence
/// (where scripts and the engine know the case by it) or the driver's, which says what to do. The driver's own words
/// are the error's cause.
///
/// The driver's sentences may quote pages, so what the engine reads as a sign ("-1728", "(-27") is written with a
/// typographic minus in them.
[[nodiscard]] applescript::ScriptError scriptError(const DriverFailure& failure);

} // namespace tabwright::scripting
