#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/ScriptableApplication.h"
#include "scripting/model/ObjectClass.h"

#include <memory>

namespace tabwright::scripting {

class ObjectModel;

/// An application as one event sees it. Each application derives its own, holding the one snapshot that answers the
/// event, and its tables cast the scope they are given back to that type. Lives on the stack of `handle`; one thread.
///
///     class BrowserScope : public EventScope { … };
///     constexpr PropertyRow rows[]{{fourCharCode("pnam"), reading<BrowserScope, tabTitle>}};
class EventScope {
public:
  /// The model and the message outlive the scope.
  EventScope(const ObjectModel& model, std::shared_ptr<applescript::ScriptableApplication> application,
             const applescript::AppleEventMessage& message);
  virtual ~EventScope() = default;
  EventScope(const EventScope&) = delete;
  EventScope& operator=(const EventScope&) = delete;

  /// For commands, which find their objects by it.
  [[nodiscard]] const ObjectModel& model() const { return model_; }
  /// The event itself, with its parameters and limits.
  [[nodiscard]] const applescript::AppleEventMessage& message() const { return message_; }
  /// Specifier of the application itself, the root of all others; never null. It is the event's own where that has one,
  /// so that answers share it.
  [[nodiscard]] const applescript::SpecifierPointer& root() const { return root_; }

private:
  const ObjectModel& model_;
  const applescript::AppleEventMessage& message_;
  applescript::SpecifierPointer root_;
};

/// Adapters for the tables: a function over an application's own scope as one over EventScope. Only for tables whose
/// model is given no other scope, since the cast isn't checked.
template <class Scope, auto Get>
Found reading(EventScope& scope, Object object) {
  return Get(static_cast<Scope&>(scope), object);
}
template <class Scope, auto Set>
void writing(EventScope& scope, Object object, const applescript::Value& value) {
  Set(static_cast<Scope&>(scope), object, value);
}

} // namespace tabwright::scripting
