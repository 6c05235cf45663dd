// Answers by hand the few events that make sense without a dictionary: activate (and run), count, and get of the
// application, its name or its id. Another property is −1728, another event −1708.
#include "scripting/PlainApplication.h"

#include "applescript/ScriptError.h"
#include "applescript/values/Errors.h"

#include <cstdint>
#include <utility>

namespace tabwright::scripting {

using applescript::ObjectSpecifier;
using applescript::Value;
namespace events = applescript::events;
namespace errors = applescript::errors;

PlainApplication::PlainApplication(std::string name, std::string bundleIdentifier, std::function<void()> activate)
    : name_(std::move(name)), bundleIdentifier_(std::move(bundleIdentifier)), activate_(std::move(activate)) {}

const applescript::Terminology* PlainApplication::terminology() const {
  return &applescript::languageTerminology();
}

Value PlainApplication::handle(const applescript::AppleEventMessage& message) {
  if (message.code == events::activate || message.code == events::run) {
    if (activate_)
      activate_();
    return Value::missing();
  }
  // The runtime library asks whether there are windows to read, and there are none.
  if (message.code == events::count)
    return Value(std::int64_t{0});
  const Value* target = message.directObject ? &*message.directObject : nullptr;
  const auto* specifier = target ? target->get<Value::SpecifierPointer>() : nullptr;
  if (message.code == events::get && specifier) {
    if ((*specifier)->form == ObjectSpecifier::Form::application)
      return *target;
    const bool isOwn = (*specifier)->container && (*specifier)->container->form == ObjectSpecifier::Form::application;
    if ((*specifier)->form == ObjectSpecifier::Form::property && isOwn) {
      if ((*specifier)->desiredClass == applescript::fourCharCode("pnam"))
        return Value(name_);
      if ((*specifier)->desiredClass == applescript::fourCharCode("ID  "))
        return Value(bundleIdentifier_);
    }
    throw errors::cannotGet(**specifier, *terminology());
  }
  throw errors::notUnderstood(target ? *target : Value(name_), message.code, *terminology());
}

} // namespace tabwright::scripting
