#pragma once

#include "applescript/values/Value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// An object or a class behind the Objective-C bridge: opaque to the language until it is coerced. Shared by the values
/// that hold it, and used on the thread of the run.
class ForeignObject {
public:
  virtual ~ForeignObject() = default;

  /// Sends a message. `selector` is complete, with its colons ("initWithData:encoding:", "allKeys"). Arguments hold no
  /// references, but foreign objects as they are. The answer may be a foreign object again. Throws ScriptError −1708
  /// when the object doesn't know the selector, −10000 with the exception's sentence when the method fails (such as
  /// "Invalid type in JSON write").
  virtual Value send(std::string_view selector, const std::vector<Value>& arguments) = 0;

  /// The value of the language that this object is (`as text`, `as list`, `as record`, …): text of an NSString, list of
  /// an NSArray, record of an NSDictionary, number of an NSNumber, `missing value` of NSNull. Items of containers are
  /// unwrapped at every depth. Nothing for an object without such a form. Comparison, `class of`, `repeat with … in`,
  /// `count` and coercion use it.
  [[nodiscard]] virtual std::optional<Value> unwrapped() const = 0;

  /// Source form for results and messages, such as "«class ocid» NSMutableDictionary".
  [[nodiscard]] virtual std::string description() const = 0;
};

/// The bridge to Foundation, as `current application's NAME` reaches it. Asked from the threads of several runs at
/// once.
class ObjectiveCBridge {
public:
  virtual ~ObjectiveCBridge() = default;

  /// A class (`NSString`) as a foreign object, or a constant (`NSUTF8StringEncoding`) as a value; nothing for a name
  /// that the bridge doesn't know.
  [[nodiscard]] virtual std::optional<Value> named(std::string_view name) const = 0;
};

} // namespace tabwright::applescript
