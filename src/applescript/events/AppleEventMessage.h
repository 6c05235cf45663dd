#pragma once

#include "applescript/events/FourCharCode.h"
#include "applescript/values/Value.h"
#include "platform/Notices.h"

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace tabwright::applescript {

/// Identity of an event: `core`/`getd` is the event that `get` sends.
struct EventCode {
  FourCharCode eventClass = 0;
  FourCharCode eventID = 0;
  friend bool operator==(EventCode, EventCode) = default;
};

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
} // namespace events

namespace keywords {
inline constexpr FourCharCode directObject = fourCharCode("----");
inline constexpr FourCharCode data = fourCharCode("data");
inline constexpr FourCharCode elementClass = fourCharCode("kocl");
inline constexpr FourCharCode insertionLocation = fourCharCode("insh");
inline constexpr FourCharCode withProperties = fourCharCode("prdt");
} // namespace keywords

/// One Apple event as the evaluator sends it to an application: what is asked, of what, until when.
///
/// Values have been looked through: they hold no References and no foreign objects, but object specifiers stay
/// unresolved. The direct object is absent for commands without one inside a `tell` to the application itself.
struct AppleEventMessage {
  EventCode code;
  std::optional<Value> directObject;
  std::vector<std::pair<FourCharCode, Value>> parameters;
  /// The enclosing `tell`'s target, which is the subject of commands without direct object. Null outside of any.
  Value::SpecifierPointer subject;

  /// When to give up with error −1712 (`with timeout of n seconds`, else the limit of the run).
  std::chrono::steady_clock::time_point deadline = std::chrono::steady_clock::time_point::max();
  /// Requested when the script is being stopped: give up at once with error −128.
  std::stop_token stop;
  /// Whom to tell what the answer doesn't; null for nobody.
  std::shared_ptr<platform::Notices> notices;

  /// Null when absent.
  [[nodiscard]] const Value* parameter(FourCharCode keyword) const {
    for (const auto& [key, value] : parameters) {
      if (key == keyword)
        return &value;
    }
    return nullptr;
  }
};

} // namespace tabwright::applescript
