#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/terminology/Terminology.h"

namespace tabwright::scripting {

/// Codes of the Safari dictionary that are not in the language's own tables, as its published scripting definition has
/// them.
namespace safari {
using applescript::fourCharCode;
// Classes and properties, and the one command with its parameter.
inline constexpr auto tab = fourCharCode("bTab");
inline constexpr auto currentTab = fourCharCode("cTab");
inline constexpr auto url = fourCharCode("pURL");
inline constexpr auto source = fourCharCode("conT");
inline constexpr auto target = fourCharCode("dcnm"); ///< parameter `in` of `do javascript`
inline constexpr applescript::EventCode doJavaScript{fourCharCode("sfri"), fourCharCode("dojs")};
} // namespace safari

/// The words of Safari's dictionary, the standard suite's that it uses included. Its property `text` is left out: the
/// word is the language's class far more often (`id as text`). Lives as long as the program.
[[nodiscard]] const applescript::Terminology& safariTerminology();

} // namespace tabwright::scripting
