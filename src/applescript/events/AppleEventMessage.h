#pragma once

#include "applescript/terminology/EventCode.h"
#include "applescript/values/Value.h"
#include "platform/Notices.h"

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace tabwright::applescript {

/// One Apple event as the evaluator sends it to an application: what is asked, of what, until when.
///
/// Values have been looked through: they hold no References and no foreign objects, but object specifiers stay
/// unresolved. The direct object is absent for commands without one inside a `tell` to the application itself.
///
/// A message lives for the one call of ScriptableApplication::handle that it is made for, on the thread of the run.
struct AppleEventMessage {
  EventCode code;
  std::optional<Value> directObject;
  /// By keyword (`keywords` of EventCode.h, or the dictionary's), without the direct object; in the order written.
  std::vector<std::pair<FourCharCode, Value>> parameters;
  /// The enclosing `tell`'s target, which is the subject of commands without direct object. Null outside of any.
  Value::SpecifierPointer subject;

  /// When to give up with error −1712 (`with timeout of n seconds`, else the limit of the run).
  std::chrono::steady_clock::time_point deadline = std::chrono::steady_clock::time_point::max();
  /// Requested when the script is being stopped: give up at once with error −128.
  std::stop_token stop;
  /// Whom to tell what the answer doesn't; null for nobody.
  std::shared_ptr<platform::Notices> notices;

  /// The value of a parameter, which lives as long as the message; null when absent. Of a keyword given twice, as raw
  /// codes can, the first.
  [[nodiscard]] const Value* parameter(FourCharCode keyword) const {
    for (const auto& [key, value] : parameters) {
      if (key == keyword)
        return &value;
    }
    return nullptr;
  }
};

} // namespace tabwright::applescript
