// The class of a value, told by a visitor over the kinds that values have. A kind without an operator of its own
// doesn't compile, so a new one can't be forgotten. Class names are made once and handed out shared.
#include "applescript/values/ClassNames.h"

#include "applescript/values/Dates.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"

namespace tabwright::applescript {

namespace {

using Class = Value::ClassPointer;

/// The classes that values have, made once: `class of x is y` is asked in loops.
struct Classes {
  const Class typeClass = made(codes::typeClass, "class");
  const Class boolean = made(codes::boolean, "boolean");
  const Class integer = made(codes::integer, "integer");
  const Class real = made(codes::real, "real");
  const Class text = made(codes::text, "text");
  const Class date = made(codes::date, "date");
  const Class month = made(codes::month, "month");
  const Class weekday = made(codes::weekday, "weekday");
  const Class constant = made(codes::constant, "constant");
  const Class list = made(codes::list, "list");
  const Class record = made(codes::record, "record");
  const Class application = made(codes::application, "application");
  const Class reference = made(codes::reference, "reference");
  const Class script = made(codes::script, "script");
  const Class foreign = made(codes::foreign, "«class ocid»");

  static Class made(FourCharCode code, std::string words) {
    return std::make_shared<const ClassName>(ClassName{code, std::move(words)});
  }
};

struct ClassVisitor {
  const Classes& classes;

  Class operator()(Value::MissingValue) const { return classes.typeClass; }
  Class operator()(Value::Null) const { return classes.typeClass; }
  Class operator()(Value::Nothing) const { return classes.typeClass; }
  Class operator()(bool) const { return classes.boolean; }
  Class operator()(std::int64_t) const { return classes.integer; }
  Class operator()(double) const { return classes.real; }
  Class operator()(const Text&) const { return classes.text; }
  Class operator()(Date) const { return classes.date; }
  Class operator()(const Value::ClassPointer&) const { return classes.typeClass; }
  Class operator()(const Value::EnumeratorPointer& enumerator) const {
    // Months and days of the week are constants with classes of their own.
    if (monthOf(*enumerator))
      return classes.month;
    return weekdayOf(*enumerator) ? classes.weekday : classes.constant;
  }
  Class operator()(const Value::ListPointer&) const { return classes.list; }
  Class operator()(const Value::RecordPointer&) const { return classes.record; }
  Class operator()(const Value::SpecifierPointer& specifier) const {
    return specifier->form == ObjectSpecifier::Form::application ? classes.application : classes.reference;
  }
  Class operator()(const Value::ReferencePointer& reference) const { return classOf(lookThrough(reference)); }
  Class operator()(const Value::ScriptPointer&) const { return classes.script; }
  Class operator()(const Value::ForeignPointer& foreign) const {
    if (const auto unwrapped = foreign->unwrapped(); unwrapped && !unwrapped->is<Value::ForeignPointer>())
      return classOf(*unwrapped);
    return classes.foreign;
  }
};

} // namespace

Value::ClassPointer classOf(const Value& value) {
  static const Classes classes;
  return value.visit(ClassVisitor{classes});
}

bool isTextClass(FourCharCode code) {
  return code == codes::text || code == codes::string || code == codes::unicodeText;
}

bool sameClass(FourCharCode left, FourCharCode right) {
  // `class` is a property by one code and a class by the other; compared, they mean the same.
  const auto isClassClass = [](FourCharCode code) { return code == codes::className || code == codes::typeClass; };
  return left == right || (isTextClass(left) && isTextClass(right)) || (isClassClass(left) && isClassClass(right));
}

bool isKindOf(const Value& value, FourCharCode classCode) {
  if (classCode == codes::item || classCode == codes::anything)
    return true;
  const FourCharCode own = classOf(value)->code;
  // There is no value whose own class is `number`.
  if (classCode == codes::number)
    return own == codes::integer || own == codes::real;
  return sameClass(own, classCode);
}

} // namespace tabwright::applescript
