#pragma once

#include "applescript/terminology/FourCharCode.h"

#include <cstdint>

namespace tabwright::applescript {

/// Identity of an event: `core`/`getd` is the event that `get` sends.
struct EventCode {
  FourCharCode eventClass = 0;
  FourCharCode eventID = 0;
  friend bool operator==(EventCode, EventCode) = default;
};

/// An event's identity as one number, for tables and to switch over.
[[nodiscard]] constexpr std::uint64_t eventKey(EventCode code) {
  return std::uint64_t{code.eventClass} << 32 | code.eventID;
}

namespace events {
inline constexpr EventCode get{fourCharCode("core"), fourCharCode("getd")};
inline constexpr EventCode set{fourCharCode("core"), fourCharCode("setd")}; ///< value in keyword 'data'
inline constexpr EventCode count{
    fourCharCode("core"),
    fourCharCode("cnte")}; ///< direct object: the container of what is counted, or every …; class in 'kocl'
inline constexpr EventCode exists{fourCharCode("core"), fourCharCode("doex")};
inline constexpr EventCode make{fourCharCode("core"),
                                fourCharCode("crel")}; ///< class 'kocl', place 'insh', properties 'prdt'
inline constexpr EventCode close{fourCharCode("core"), fourCharCode("clos")};
inline constexpr EventCode remove{fourCharCode("core"), fourCharCode("delo")};
inline constexpr EventCode activate{fourCharCode("misc"), fourCharCode("actv")};
inline constexpr EventCode quit{fourCharCode("aevt"), fourCharCode("quit")};
inline constexpr EventCode open{fourCharCode("aevt"), fourCharCode("odoc")};
inline constexpr EventCode run{fourCharCode("aevt"), fourCharCode("oapp")};
inline constexpr EventCode launch{fourCharCode("ascr"), fourCharCode("noop")};
inline constexpr EventCode reopen{fourCharCode("aevt"), fourCharCode("rapp")};
} // namespace events

namespace keywords {
inline constexpr FourCharCode directObject = fourCharCode("----");
inline constexpr FourCharCode data = fourCharCode("data");
inline constexpr FourCharCode elementClass = fourCharCode("kocl");
inline constexpr FourCharCode insertionLocation = fourCharCode("insh");
inline constexpr FourCharCode withProperties = fourCharCode("prdt");
} // namespace keywords

} // namespace tabwright::applescript
