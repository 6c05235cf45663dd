#pragma once

#include "applescript/terminology/FourCharCode.h"

#include <cstdint>

namespace tabwright::applescript {

/// Identity of an event: `core`/`getd` is the event that `get` sends. A suite's code and the code of the event in it.
struct EventCode {
  FourCharCode eventClass = 0;
  FourCharCode eventID = 0;
  friend bool operator==(EventCode, EventCode) = default;
};

/// An event's identity as one number, for tables and to switch over: the class in the upper 32 bits, the id in the
/// lower.
[[nodiscard]] constexpr std::uint64_t eventKey(EventCode code) {
  return std::uint64_t{code.eventClass} << 32 | code.eventID;
}

/// Events of the required, core and miscellaneous suites, and `launch` of the language's own, by the codes that the
/// Open Scripting Architecture gives them, as far as code here asks for them. All others stand in dictionaries only.
namespace events {
/// Direct object: the specifier whose value is asked for.
inline constexpr EventCode get{fourCharCode("core"), fourCharCode("getd")};
inline constexpr EventCode set{fourCharCode("core"), fourCharCode("setd")}; ///< value in keyword 'data'
inline constexpr EventCode count{
    fourCharCode("core"),
    fourCharCode("cnte")}; ///< direct object: the container of what is counted, or every …; class in 'kocl'
inline constexpr EventCode exists{fourCharCode("core"), fourCharCode("doex")};
inline constexpr EventCode make{fourCharCode("core"),
                                fourCharCode("crel")}; ///< class 'kocl', place 'insh', properties 'prdt'
inline constexpr EventCode close{fourCharCode("core"), fourCharCode("clos")};
/// The command `delete`.
inline constexpr EventCode remove{fourCharCode("core"), fourCharCode("delo")};
inline constexpr EventCode activate{fourCharCode("misc"), fourCharCode("actv")};
inline constexpr EventCode quit{fourCharCode("aevt"), fourCharCode("quit")};
inline constexpr EventCode open{fourCharCode("aevt"), fourCharCode("odoc")};
/// `aevt`/`oapp`, the event that opens an application; a script object's `run` is the same command.
inline constexpr EventCode run{fourCharCode("aevt"), fourCharCode("oapp")};
inline constexpr EventCode launch{fourCharCode("ascr"), fourCharCode("noop")};
inline constexpr EventCode reopen{fourCharCode("aevt"), fourCharCode("rapp")};
} // namespace events

/// Keywords of parameters that several events share; those of one command stand in its row.
namespace keywords {
inline constexpr FourCharCode directObject = fourCharCode("----");
/// The value of `set`, or `with data` of `make`.
inline constexpr FourCharCode data = fourCharCode("data");
/// The class that is made or counted.
inline constexpr FourCharCode elementClass = fourCharCode("kocl");
/// The place of something new or moved: an insertion point, or a container.
inline constexpr FourCharCode insertionLocation = fourCharCode("insh");
/// A record of properties for something new.
inline constexpr FourCharCode withProperties = fourCharCode("prdt");
} // namespace keywords

} // namespace tabwright::applescript
