// NSObject, and the classes of single values: NSNumber, NSNull, NSDate, NSData, with NSJSONSerialization between data
// and the rest. A number keeps the language's value, and is converted when a method asks for another form.
#include "scripting/foundation/FoundationObject.h"
#include "scripting/foundation/FoundationTime.h"
#include "scripting/foundation/JSONSerialization.h"
#include "scripting/model/Arguments.h"

namespace tabwright::scripting {

using applescript::Value;

namespace {

// ------------------------------------------------------------------ object

/// An object that understands initializers only, as the next message.
Value alloc(FoundationObject& self, const Arguments&) {
  return makeObject(self.type(), FoundationAllocated{});
}

Value createNew(FoundationObject& self, const Arguments&) {
  return FoundationObject(self.type(), FoundationAllocated{}).send("init", {});
}

Value same(FoundationObject& self, const Arguments&) {
  return Value(Value::ForeignPointer(self.shared_from_this()));
}

constexpr FoundationMethod objectClassMethods[]{{"alloc", alloc}, {"new", createNew}};
constexpr FoundationMethod objectMethods[]{{"copy", same}, {"self", same}};

// ----------------------------------------------------------------- numbers

const Value& number(FoundationObject& self) {
  return self.as<FoundationNumber>().value;
}

/// Keeps the value as it was given: the three constructors differ in name only.
Value numberOf(FoundationObject&, const Arguments& arguments) {
  Value value = unbridged(arguments[0]);
  if (!value.is<std::int64_t>() && !value.is<double>() && !value.is<bool>())
    throw errors::of(errorNumber::handlerFailed, "A number is made of a number or a boolean only.");
  return makeObject(numberClass, FoundationNumber{std::move(value)});
}

Value asReal(FoundationObject& self, const Arguments&) {
  if (const auto* boolean = number(self).get<bool>())
    return Value(*boolean ? 1.0 : 0.0);
  // A real is its own answer.
  const auto* integer = number(self).get<std::int64_t>();
  return integer != nullptr ? Value(static_cast<double>(*integer)) : number(self);
}

Value asInteger(FoundationObject& self, const Arguments&) {
  if (const auto* boolean = number(self).get<bool>())
    return Value(*boolean ? 1 : 0);
  return Value(requireInteger(number(self)));
}

Value asBoolean(FoundationObject& self, const Arguments&) {
  if (const auto* boolean = number(self).get<bool>())
    return Value(*boolean);
  const auto* integer = number(self).get<std::int64_t>();
  return Value(integer != nullptr ? *integer != 0 : *number(self).get<double>() != 0);
}

Value asString(FoundationObject& self, const Arguments&) {
  return makeObject(stringClass, applescript::Text(requireText(number(self))));
}

constexpr FoundationMethod numberClassMethods[]{
    {"numberWithBool:", numberOf},
    {"numberWithDouble:", numberOf},
    {"numberWithInteger:", numberOf},
};
constexpr FoundationMethod numberMethods[]{
    {"boolValue", asBoolean},
    {"doubleValue", asReal},
    {"integerValue", asInteger},
    {"stringValue", asString},
};

// ------------------------------------------------------------ null and dates

Value nullObject(FoundationObject&, const Arguments&) {
  return makeObject(nullClass, FoundationNull{});
}

constexpr FoundationMethod nullClassMethods[]{{"null", nullObject}};

Value currentDate(FoundationObject& self, const Arguments&) {
  return makeObject(dateClass, FoundationDate{self.as<FoundationMetaclass>().environment->now()});
}

Value dateSince1970(FoundationObject&, const Arguments& arguments) {
  const Value seconds = unbridged(arguments[0]);
  const auto* real = seconds.get<double>();
  return makeObject(dateClass, FoundationDate{real != nullptr ? *real : static_cast<double>(requireInteger(seconds))});
}

constexpr FoundationMethod dateClassMethods[]{
    {"date", currentDate},
    {"dateWithTimeIntervalSince1970:", dateSince1970},
};
constexpr FoundationMethod dateMethods[]{
    {"timeIntervalSince1970",
     [](FoundationObject& self, const Arguments&) { return Value(self.as<FoundationDate>().secondsSince1970); }},
    {"timeIntervalSinceReferenceDate",
     [](FoundationObject& self, const Arguments&) {
       return Value(self.as<FoundationDate>().secondsSince1970 - referenceDate);
     }},
};

// ------------------------------------------------------------- data and JSON

constexpr FoundationMethod dataMethods[]{
    {"length",
     [](FoundationObject& self, const Arguments&) {
       return Value(static_cast<std::int64_t>(self.as<FoundationData>().bytes.size()));
     }},
};

Value writeJSON(FoundationObject&, const Arguments& arguments) {
  return makeObject(dataClass, FoundationData{jsonText(arguments[0], integerArgument(arguments, 1))});
}

Value readJSON(FoundationObject&, const Arguments& arguments) {
  const auto* data = payloadOf<FoundationData>(arguments[0]);
  // The error goes to an out parameter that a script leaves empty; what it sees of a failure is nil.
  const auto value = data != nullptr ? valueOfJSON(data->bytes, integerArgument(arguments, 1)) : std::nullopt;
  return value ? bridged(*value) : Value::missing();
}

constexpr FoundationMethod jsonClassMethods[]{
    {"JSONObjectWithData:options:error:", readJSON},
    {"dataWithJSONObject:options:error:", writeJSON},
    {"isValidJSONObject:",
     [](FoundationObject&, const Arguments& arguments) { return Value(isValidJSON(arguments[0])); }},
};

} // namespace

constinit const FoundationClass objectClass{"NSObject", nullptr, objectClassMethods, {}, objectMethods};
constinit const FoundationClass numberClass{"NSNumber", &objectClass, numberClassMethods, {}, numberMethods};
constinit const FoundationClass nullClass{"NSNull", &objectClass, nullClassMethods};
constinit const FoundationClass dateClass{"NSDate", &objectClass, dateClassMethods, {}, dateMethods};
constinit const FoundationClass dataClass{"NSData", &objectClass, {}, {}, dataMethods};
constinit const FoundationClass jsonSerializationClass{"NSJSONSerialization", &objectClass, jsonClassMethods};

} // namespace tabwright::scripting
