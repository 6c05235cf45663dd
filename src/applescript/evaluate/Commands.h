#pragma once

#include "applescript/terminology/EventCode.h"

#include <cstdint>

namespace tabwright::applescript {

/// An event's identity as one number, to switch over.
[[nodiscard]] constexpr std::uint64_t commandKey(EventCode code) {
  return std::uint64_t{code.eventClass} << 32 | code.eventID;
}

/// The commands that come with every system, which the evaluator answers itself, or refuses.
namespace additions {
inline constexpr EventCode asciiCharacter{fourCharCode("sysb"), fourCharCode("ntoa")};
inline constexpr EventCode asciiNumber{fourCharCode("sysb"), fourCharCode("aton")};
inline constexpr EventCode beep{fourCharCode("syso"), fourCharCode("beep")};
inline constexpr EventCode chooseFromList{fourCharCode("gtqp"), fourCharCode("chlt")};
inline constexpr EventCode clipboard{fourCharCode("JonS"), fourCharCode("gClp")};
inline constexpr EventCode currentDate{fourCharCode("misc"), fourCharCode("curd")};
inline constexpr EventCode delay{fourCharCode("sysd"), fourCharCode("dela")};
inline constexpr EventCode displayDialog{fourCharCode("syso"), fourCharCode("dlog")};
inline constexpr EventCode displayNotification{fourCharCode("noti"), fourCharCode("disp")};
inline constexpr EventCode doShellScript{fourCharCode("syso"), fourCharCode("exec")};
inline constexpr EventCode launch{fourCharCode("ascr"), fourCharCode("noop")};
inline constexpr EventCode log{fourCharCode("ascr"), fourCharCode("cmnt")};
inline constexpr EventCode offset{fourCharCode("syso"), fourCharCode("offs")};
inline constexpr EventCode randomNumber{fourCharCode("sysv"), fourCharCode("rand")};
inline constexpr EventCode read{fourCharCode("rdwr"), fourCharCode("read")};
inline constexpr EventCode reopen{fourCharCode("aevt"), fourCharCode("rapp")};
inline constexpr EventCode round{fourCharCode("sysv"), fourCharCode("rnd ")};
inline constexpr EventCode runScript{fourCharCode("sysv"), fourCharCode("dsct")};
inline constexpr EventCode say{fourCharCode("sysv"), fourCharCode("ttos")};
inline constexpr EventCode setClipboard{fourCharCode("JonS"), fourCharCode("pClp")};
} // namespace additions

} // namespace tabwright::applescript
