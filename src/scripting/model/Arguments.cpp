// Arguments are coerced as the language coerces them; ids match in whichever of their forms a script has kept them.
#include "scripting/model/Arguments.h"

#include "applescript/values/Coercion.h"
#include "applescript/values/Errors.h"

#include <cmath>

namespace tabwright::scripting {

using applescript::Value;
namespace errors = applescript::errors;

std::string requireText(const Value& value) {
  if (value.isMissing() || value.isNull())
    throw errors::cannotMake(value, "text");
  return applescript::textOf(value);
}

std::int64_t requireInteger(const Value& value) {
  const auto* integer = value.get<std::int64_t>(); // nearly always
  return integer ? *integer : applescript::integerOf(value);
}

bool requireBoolean(const Value& value) {
  return applescript::booleanOf(value);
}

std::optional<std::string> idText(const Value& value) {
  if (const std::string* text = value.text())
    return *text;
  if (const auto* integer = value.get<std::int64_t>())
    return std::to_string(*integer);
  const auto* real = value.get<double>();
  // Beyond some 9·10¹⁵ a real no longer tells neighbouring whole numbers apart.
  if (real && std::trunc(*real) == *real && std::abs(*real) < 9.0e15)
    return std::to_string(static_cast<std::int64_t>(*real));
  return std::nullopt;
}

} // namespace tabwright::scripting
