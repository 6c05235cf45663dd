#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/terminology/Terminology.h"

namespace tabwright::scripting {

/// Codes of the System Events dictionary that are not in the language's own tables.
namespace systemevents {
using applescript::fourCharCode;
inline constexpr auto process = fourCharCode("prcs");
inline constexpr auto applicationProcess = fourCharCode("pcap");
inline constexpr auto menuBar = fourCharCode("mbar");
inline constexpr auto menuBarItem = fourCharCode("mbri");
inline constexpr auto menu = fourCharCode("menE");
inline constexpr auto menuItem = fourCharCode("menI");
inline constexpr auto bundleIdentifier = fourCharCode("bnid");
inline constexpr auto unixID = fourCharCode("idux");
inline constexpr auto backgroundOnly = fourCharCode("bkgo");
inline constexpr auto enabled = fourCharCode("enaB");
inline constexpr auto usingModifiers = fourCharCode("faal"); ///< parameter `using` of `keystroke` and `key code`
inline constexpr applescript::EventCode click{fourCharCode("prcs"), fourCharCode("clic")};
inline constexpr applescript::EventCode keystroke{fourCharCode("prcs"), fourCharCode("kprs")};
inline constexpr applescript::EventCode keyCode{fourCharCode("prcs"), fourCharCode("kcod")};
inline constexpr applescript::EventCode keyDown{fourCharCode("prcs"), fourCharCode("keyF")};
inline constexpr applescript::EventCode keyUp{fourCharCode("prcs"), fourCharCode("keyU")};
} // namespace systemevents

/// The words of the System Events dictionary: processes, their windows and menus, and the keyboard.
[[nodiscard]] const applescript::Terminology& systemEventsTerminology();

} // namespace tabwright::scripting
