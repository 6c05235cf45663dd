#include "applescript/values/ClassNames.h"

#include "applescript/events/ObjectSpecifier.h"
#include "applescript/values/Dates.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Reference.h"

namespace tabwright::applescript {

namespace {

struct ClassVisitor {
  ClassName operator()(Value::MissingValue) const { return {codes::typeClass, "class"}; }
  ClassName operator()(Value::Null) const { return {codes::typeClass, "class"}; }
  ClassName operator()(Value::Nothing) const { return {codes::typeClass, "class"}; }
  ClassName operator()(bool) const { return {codes::boolean, "boolean"}; }
  ClassName operator()(std::int64_t) const { return {codes::integer, "integer"}; }
  ClassName operator()(double) const { return {codes::real, "real"}; }
  ClassName operator()(const Text&) const { return {codes::text, "text"}; }
  ClassName operator()(Date) const { return {codes::date, "date"}; }
  ClassName operator()(const Value::ClassPointer&) const { return {codes::typeClass, "class"}; }
  ClassName operator()(const Value::EnumeratorPointer& enumerator) const {
    if (monthOf(*enumerator))
      return {codes::month, "month"};
    if (weekdayOf(*enumerator))
      return {codes::weekday, "weekday"};
    return {codes::constant, "constant"};
  }
  ClassName operator()(const Value::ListPointer&) const { return {codes::list, "list"}; }
  ClassName operator()(const Value::RecordPointer&) const { return {codes::record, "record"}; }
  ClassName operator()(const Value::SpecifierPointer& specifier) const {
    if (specifier->form == ObjectSpecifier::Form::application)
      return {codes::application, "application"};
    return {codes::reference, "reference"};
  }
  ClassName operator()(const Value::ReferencePointer& reference) const { return classOf(lookThrough(reference)); }
  ClassName operator()(const Value::ScriptPointer&) const { return {codes::script, "script"}; }
  ClassName operator()(const Value::ForeignPointer& foreign) const {
    if (const auto unwrapped = foreign->unwrapped(); unwrapped && !unwrapped->is<Value::ForeignPointer>())
      return classOf(*unwrapped);
    return {codes::foreign, "«class ocid»"};
  }
};

} // namespace

ClassName classOf(const Value& value) {
  return std::visit(ClassVisitor{}, value.storage());
}

bool isTextClass(FourCharCode code) {
  return code == codes::text || code == codes::string || code == codes::unicodeText;
}

bool sameClass(FourCharCode left, FourCharCode right) {
  const auto isClassClass = [](FourCharCode code) { return code == codes::className || code == codes::typeClass; };
  return left == right || (isTextClass(left) && isTextClass(right)) || (isClassClass(left) && isClassClass(right));
}

bool isKindOf(const Value& value, FourCharCode classCode) {
  if (classCode == codes::item || classCode == codes::anything)
    return true;
  const FourCharCode own = classOf(value).code;
  if (classCode == codes::number)
    return own == codes::integer || own == codes::real;
  return sameClass(own, classCode);
}

} // namespace tabwright::applescript
