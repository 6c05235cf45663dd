#include "RecordingApplication.h"

#include "applescript/Interpreter.h"
#include "applescript/values/Errors.h"
#include "applescript/values/Names.h"
#include "applescript/values/ObjectSpecifier.h"

namespace tabwright::applescript::test {

std::string RecordingApplication::shown(const Value& value) const {
  std::string text = sourceForm(value);
  const std::string root = " of application \"" + name_ + "\"";
  for (std::size_t at = text.find(root); at != std::string::npos; at = text.find(root))
    text.erase(at, root.size());
  return text;
}

Value RecordingApplication::handle(const AppleEventMessage& message) {
  const Term* term = terminology()->findCommand(message.code);
  if (!term)
    term = languageTerminology().findCommand(message.code);
  std::string line = message.code == applescript::events::set ? "set" : term ? std::string(term->words) : "?";
  if (message.directObject)
    line += " " + shown(*message.directObject);
  for (const auto& [keyword, value] : message.parameters)
    line += " " + toString(keyword) + ":" + shown(value);
  if (!message.directObject && message.subject && message.subject->form != ObjectSpecifier::Form::application)
    line += " to " + shown(message.subject);
  events.push_back(line);
  if (onEvent)
    onEvent(message);
  if (const auto answer = answers.find(line); answer != answers.end())
    return answer->second;
  if (message.code == applescript::events::get)
    throw errors::cannotGet(line.substr(4));
  return Value::missing();
}

std::shared_ptr<ScriptableApplication> RecordingDirectory::findByID(std::string_view id) {
  for (const auto& application : {chrome, systemEvents}) {
    if (sameName(id, application->bundleIdentifier()))
      return application;
  }
  return nullptr;
}

std::shared_ptr<ScriptableApplication> RecordingDirectory::findByName(std::string_view name) {
  for (const auto& application : {chrome, systemEvents}) {
    if (name == application->name())
      return application;
  }
  return nullptr;
}

} // namespace tabwright::applescript::test
