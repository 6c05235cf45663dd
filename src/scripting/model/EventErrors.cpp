#include "scripting/model/EventErrors.h"

#include "scripting/model/SpecifierText.h"

#include <fmt/core.h>

namespace tabwright::scripting {

using applescript::ScriptError;
namespace errorNumber = applescript::errorNumber;

ScriptError eventError(int number, std::string sentence) {
  return ScriptError(ScriptError::Stage::execution, number, std::move(sentence));
}

ScriptError cannotGet(const applescript::ObjectSpecifier& specifier, const applescript::Terminology& terminology) {
  return eventError(errorNumber::noSuchObject, fmt::format("Can’t get {}.", specifierText(specifier, terminology)));
}

ScriptError invalidIndex(const applescript::ObjectSpecifier& specifier, const applescript::Terminology& terminology) {
  return eventError(errorNumber::invalidIndex,
                    fmt::format("Can’t get {}. Invalid index.", specifierText(specifier, terminology)));
}

ScriptError cannotSet(const applescript::ObjectSpecifier& specifier, const applescript::Value& value,
                      const applescript::Terminology& terminology) {
  return eventError(errorNumber::cannotSet, fmt::format("Can’t set {} to {}.", specifierText(specifier, terminology),
                                                        valueText(value, terminology)));
}

ScriptError notUnderstood(const applescript::Value& subject, applescript::EventCode event,
                          const applescript::Terminology& terminology) {
  const applescript::Term* command = terminology.findCommand(event);
  if (command == nullptr)
    command = applescript::languageTerminology().findCommand(event);
  const std::string words = command != nullptr ? std::string(command->words)
                                               : fmt::format("«event {}{}»", applescript::toString(event.eventClass),
                                                             applescript::toString(event.eventID));
  return eventError(errorNumber::notHandled,
                    fmt::format("{} doesn’t understand the “{}” message.", valueText(subject, terminology), words));
}

ScriptError cannotMake(const applescript::Value& value, std::string_view type) {
  return eventError(errorNumber::cannotMake, fmt::format("Can’t make {} into type {}.",
                                                         valueText(value, applescript::languageTerminology()), type));
}

ScriptError missingParameter(std::string_view words) {
  return eventError(errorNumber::missingParameter, fmt::format("Missing {} parameter.", words));
}

} // namespace tabwright::scripting
