// Descriptors know fewer types than the language: what has none there goes over as its source form.
#include "scripting/run/DescriptorConversion.h"

#include "applescript/Interpreter.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Traversal.h"

#include <limits>

namespace tabwright::scripting {

using applescript::Value;
using platform::AppleEventDescriptor;
using DescriptorKind = platform::AppleEventDescriptor::Kind;

Value valueOf(const AppleEventDescriptor& descriptor) {
  switch (descriptor.kind()) {
  case DescriptorKind::null:
    return Value::missing();
  case DescriptorKind::boolean:
    return Value(descriptor.booleanValue());
  case DescriptorKind::integer:
    return Value(static_cast<std::int64_t>(descriptor.int32Value()));
  case DescriptorKind::real:
    return Value(descriptor.doubleValue());
  case DescriptorKind::string:
    return Value(descriptor.stringValue().value_or(""));
  case DescriptorKind::list: {
    std::vector<Value> items;
    for (std::size_t index = 1; index <= descriptor.numberOfItems(); ++index)
      items.push_back(valueOf(*descriptor.descriptorAtIndex(index)));
    return Value::list(std::move(items));
  }
  case DescriptorKind::other:
    return Value(descriptor.description());
  }
  return Value::missing();
}

AppleEventDescriptor descriptorOf(const Value& given) {
  const applescript::Traversal bound;
  const Value value = applescript::plainValue(given);
  if (const std::string* text = value.text())
    return AppleEventDescriptor::string(*text);
  if (const auto* boolean = value.get<bool>())
    return AppleEventDescriptor::boolean(*boolean);
  if (const auto* real = value.get<double>())
    return AppleEventDescriptor::real(*real);
  if (const auto* integer = value.get<std::int64_t>()) {
    // Descriptors have integers of 32 bits, and reals hold whole numbers up to 53.
    using Limits = std::numeric_limits<std::int32_t>;
    return *integer >= Limits::min() && *integer <= Limits::max()
               ? AppleEventDescriptor::integer(static_cast<std::int32_t>(*integer))
               : AppleEventDescriptor::real(static_cast<double>(*integer));
  }
  if (const auto* list = value.get<Value::ListPointer>()) {
    AppleEventDescriptor result = AppleEventDescriptor::list();
    for (const Value& item : (*list)->items)
      result.append(descriptorOf(item));
    return result;
  }
  return AppleEventDescriptor::other(applescript::sourceForm(value));
}

} // namespace tabwright::scripting
