#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/terminology/Terminology.h"

namespace tabwright::scripting {

/// Codes of the System Events dictionary that are not in the language's own tables.
namespace systemevents {
using applescript::fourCharCode;
// Classes and properties.
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
// Of elements in windows, of the desktop's appearance, and of attributes.
inline constexpr auto accessibilityDescription = fourCharCode("axds");
inline constexpr auto action = fourCharCode("actT");
inline constexpr auto appearancePreferences = fourCharCode("aprp");
inline constexpr auto attribute = fourCharCode("attr");
inline constexpr auto darkMode = fourCharCode("dark");
inline constexpr auto description = fourCharCode("desc");
inline constexpr auto elementsEnabled = fourCharCode("uien"); ///< `UI elements enabled`
inline constexpr auto entireContents = fourCharCode("ects");
inline constexpr auto focused = fourCharCode("focu");
inline constexpr auto position = fourCharCode("posn");
inline constexpr auto role = fourCharCode("role");
inline constexpr auto roleDescription = fourCharCode("rold");
inline constexpr auto selected = fourCharCode("selE");
inline constexpr auto settable = fourCharCode("stbl");
inline constexpr auto sheet = fourCharCode("sheE");
inline constexpr auto size = fourCharCode("ptsz");
inline constexpr auto subrole = fourCharCode("sbrl");
inline constexpr auto value = fourCharCode("valL");
inline constexpr auto usingModifiers = fourCharCode("faal"); ///< parameter `using` of `keystroke` and `key code`
// Commands, and their parameters. The suite has the code of its class `process`.
inline constexpr applescript::EventCode click{fourCharCode("prcs"), fourCharCode("clic")};
inline constexpr auto clickPlace = fourCharCode("insh"); ///< parameter `at` of `click`
inline constexpr applescript::EventCode cancel{fourCharCode("prcs"), fourCharCode("cncl")};
inline constexpr applescript::EventCode confirm{fourCharCode("prcs"), fourCharCode("cnfm")};
inline constexpr applescript::EventCode decrement{fourCharCode("prcs"), fourCharCode("decr")};
inline constexpr applescript::EventCode increment{fourCharCode("prcs"), fourCharCode("incr")};
inline constexpr applescript::EventCode pick{fourCharCode("prcs"), fourCharCode("pick")};
inline constexpr applescript::EventCode perform{fourCharCode("prcs"), fourCharCode("perf")};
inline constexpr applescript::EventCode keystroke{fourCharCode("prcs"), fourCharCode("kprs")};
inline constexpr applescript::EventCode keyCode{fourCharCode("prcs"), fourCharCode("kcod")};
inline constexpr applescript::EventCode keyDown{fourCharCode("prcs"), fourCharCode("keyF")};
inline constexpr applescript::EventCode keyUp{fourCharCode("prcs"), fourCharCode("keyU")};
} // namespace systemevents

/// The words of the System Events dictionary: processes, their windows and menus, the elements in windows, and the
/// keyboard. The classes of elements come from `uiElementKinds`. Lives as long as the program.
[[nodiscard]] const applescript::Terminology& systemEventsTerminology();

} // namespace tabwright::scripting
