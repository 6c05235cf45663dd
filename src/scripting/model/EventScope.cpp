#include "scripting/model/EventScope.h"

namespace tabwright::scripting {

using applescript::ObjectSpecifier;
using applescript::SpecifierPointer;
using applescript::Value;

namespace {

/// The root that the event's own specifiers hang from, so that answers can share it.
SpecifierPointer rootOf(SpecifierPointer specifier) {
  while (specifier && specifier->container)
    specifier = specifier->container;
  return specifier && specifier->form == ObjectSpecifier::Form::application ? specifier : nullptr;
}

} // namespace

EventScope::EventScope(const ObjectModel& model, std::shared_ptr<applescript::ScriptableApplication> application,
                       const applescript::AppleEventMessage& message)
    : model_(model), message_(message) {
  if (message.directObject) {
    if (const auto* specifier = message.directObject->get<Value::SpecifierPointer>())
      root_ = rootOf(*specifier);
  }
  // The direct object may name something of another application.
  if (!root_ || root_->application != application)
    root_ = applescript::applicationRoot(std::move(application));
}

} // namespace tabwright::scripting
