#include "scripting/browser/MakeRequest.h"

#include "applescript/events/AppleEventMessage.h"
#include "applescript/values/Errors.h"

namespace tabwright::scripting {

using applescript::ObjectSpecifier;
using applescript::Value;
namespace keywords = applescript::keywords;
namespace errors = applescript::errors;

const Value* MakeRequest::find(applescript::FourCharCode property) const {
  for (const auto& [code, value] : properties) {
    if (code == property)
      return &value;
  }
  return nullptr;
}

MakeRequest readMakeRequest(BrowserScope& scope) {
  const applescript::AppleEventMessage& message = scope.message();
  MakeRequest request;
  // `new` may be left out: the class is the direct object then.
  const Value* kind = message.parameter(keywords::elementClass);
  if (kind == nullptr && message.directObject)
    kind = &*message.directObject;
  if (const auto* name = kind != nullptr ? kind->get<Value::ClassPointer>() : nullptr) {
    request.elementClass = (*name)->code;
  } else if (const auto* specifier = kind != nullptr ? kind->get<Value::SpecifierPointer>() : nullptr) {
    // `make tab in w` can be read as making "the tab in w": class and place in one.
    const bool isElement = (*specifier)->form != ObjectSpecifier::Form::property && (*specifier)->container;
    if (isElement) {
      request.elementClass = (*specifier)->desiredClass;
      request.place = InsertionPlace{scope.model().object(scope, Value((*specifier)->container)), std::nullopt};
    }
  }
  if (request.elementClass == 0)
    throw errors::missingParameter("new", "make");
  if (const Value* place = message.parameter(keywords::insertionLocation))
    request.place = scope.model().place(scope, *place);
  if (const Value* properties = message.parameter(keywords::withProperties)) {
    const auto* record = properties->get<Value::RecordPointer>();
    if (record == nullptr)
      throw errors::cannotMake(*properties, "record");
    for (const auto& [label, value] : (*record)->fields)
      request.properties.emplace_back(scope.model().propertyCode(label), value);
  }
  return request;
}

} // namespace tabwright::scripting
