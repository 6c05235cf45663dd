#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/terminology/Terminology.h"

namespace tabwright::scripting {

/// Codes of the Chromium dictionary that are not in the language's own tables, as its published scripting definition
/// has them.
namespace chromium {
using applescript::fourCharCode;
// Classes and properties.
inline constexpr auto tab = fourCharCode("CrTb");
inline constexpr auto activeTab = fourCharCode("acTa");
inline constexpr auto activeTabIndex = fourCharCode("acTI");
inline constexpr auto mode = fourCharCode("mode");
inline constexpr auto givenName = fourCharCode("GvNm");
inline constexpr auto url = fourCharCode("URL ");
inline constexpr auto loading = fourCharCode("ldng");
inline constexpr auto javascript = fourCharCode("JvSc"); ///< parameter of `execute`
// Commands of Chromium's own suite.
inline constexpr applescript::EventCode execute{fourCharCode("CrSu"), fourCharCode("ExJa")};
inline constexpr applescript::EventCode reload{fourCharCode("CrSu"), fourCharCode("Rlod")};
inline constexpr applescript::EventCode stop{fourCharCode("CrSu"), fourCharCode("Stop")};
inline constexpr applescript::EventCode goBack{fourCharCode("CrSu"), fourCharCode("Back")};
inline constexpr applescript::EventCode goForward{fourCharCode("CrSu"), fourCharCode("Frwd")};
} // namespace chromium

/// `open location`, which every browser answers.
inline constexpr applescript::EventCode openLocation{applescript::fourCharCode("GURL"),
                                                     applescript::fourCharCode("GURL")};

/// The words of the Chromium family's dictionary, the standard suite's that it uses included. Lives as long as the
/// program; safe from several threads.
[[nodiscard]] const applescript::Terminology& chromiumTerminology();

} // namespace tabwright::scripting
