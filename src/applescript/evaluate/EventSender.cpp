// All events of a run pass through one `send`, which adds what each of them carries and turns whatever an application
// throws into a ScriptError that names it. Applications that the text names literally are found once in a run; a name
// that is computed is looked for each time, since it may be another one then.
#include "applescript/evaluate/EventSender.h"

#include "applescript/values/Errors.h"
#include "applescript/values/Reference.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::applescript {

Value::SpecifierPointer EventSender::find(const ApplicationReference& reference, const std::string& designation) {
  const bool byID = reference.by == ApplicationReference::By::id;
  const auto application = byID ? directory_.findByID(designation) : directory_.findByName(designation);
  if (!application)
    throw errors::cannotGet(fmt::format("application {}{}", byID ? "id " : "", shortSourceForm(Value(designation))));
  Value::SpecifierPointer root = applicationRoot(application);
  if (reference.designation->kind == Expression::Kind::literal)
    named_.emplace(&reference, root);
  return root;
}

const Value::SpecifierPointer* EventSender::known(const ApplicationReference& reference) const {
  const auto found = named_.find(&reference);
  return found != named_.end() ? &found->second : nullptr;
}

Value EventSender::send(const std::shared_ptr<ScriptableApplication>& application, AppleEventMessage message) {
  // A run that has been stopped begins nothing new.
  budget_.require();
  if (const auto* target = objectIn(frame_->target))
    message.subject = *target;
  message.deadline = std::chrono::steady_clock::now() + timeout;
  message.stop = budget_.stop();
  message.notices = notices_;
  try {
    return application->handle(message);
  } catch (ScriptError& error) {
    // An error of another application keeps its name, and a stop is nobody's error.
    if (!error.application() && error.number() != errorNumber::userCancelled)
      error.raisedBy(application->name());
    throw;
  } catch (const platform::Failure& failure) {
    throw errors::of(errorNumber::handlerFailed, failure.errorDescription()).raisedBy(application->name());
  }
}

Value EventSender::send(EventCode code, const Value::SpecifierPointer& object) {
  AppleEventMessage message;
  message.code = code;
  message.directObject = object;
  return send(object->application, std::move(message));
}

Value EventSender::get(const Value::SpecifierPointer& specifier) {
  if (specifier->form == ObjectSpecifier::Form::application || !specifier->application)
    return specifier;
  return send(events::get, specifier);
}

void EventSender::set(const Value::SpecifierPointer& specifier, const Value& value) {
  AppleEventMessage message;
  message.code = events::set;
  message.directObject = specifier;
  message.parameters.emplace_back(keywords::data, outgoing(value));
  send(specifier->application, std::move(message));
}

const Value::SpecifierPointer* objectIn(const Value& value) {
  const auto* specifier = value.get<Value::SpecifierPointer>();
  return specifier && (*specifier)->application ? specifier : nullptr;
}

Value outgoing(const Value& value) {
  return lookThroughDeep(value, ForeignObjects::unwrapped);
}

} // namespace tabwright::applescript
