#include "applescript/evaluate/ElementStep.h"

#include "applescript/values/Errors.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::applescript {

std::shared_ptr<ObjectSpecifier> stepOf(const ElementAccess& access, const ElementKey& key) {
  auto step = std::make_shared<ObjectSpecifier>();
  step->form = access.form;
  step->desiredClass = access.elementClass.code;
  step->key = key.first;
  step->rangeEnd = key.last;
  if (access.form == ElementAccess::Form::index && key.first.text() && !access.isIndexWritten)
    step->form = ObjectSpecifier::Form::name;
  return step;
}

ScriptError cannotGetElement(const ElementAccess& access, const ElementKey& key, const Value& container) {
  const std::string words = classWords(access.elementClass);
  const Term* term = languageTerminology().findCode(Term::Kind::className, access.elementClass.code);
  const std::string_view plural = term && !term->plural.empty() ? term->plural : words;
  return errors::cannotGet(
      fmt::format("{} of {}", stepSourceForm(*stepOf(access, key), {words, plural}), shortSourceForm(container)));
}

} // namespace tabwright::applescript
