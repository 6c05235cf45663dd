#include "scripting/model/SpecifierText.h"

#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::scripting {

using applescript::FourCharCode;
using applescript::ObjectSpecifier;
using applescript::SpecifierTest;
using applescript::Term;
using applescript::Terminology;
using applescript::TestOperator;
using applescript::Value;
using Form = ObjectSpecifier::Form;

namespace {

const Term* findTerm(Term::Kind kind, FourCharCode code, const Terminology& terminology) {
  const Term* term = terminology.findCode(kind, code);
  return term != nullptr ? term : applescript::languageTerminology().findCode(kind, code);
}

std::string wordsFor(Term::Kind kind, FourCharCode code, const Terminology& terminology) {
  if (const Term* term = findTerm(kind, code, terminology))
    return std::string(term->words);
  return fmt::format("«{} {}»", kind == Term::Kind::className ? "class" : "property", applescript::toString(code));
}

std::string pluralFor(FourCharCode code, const Terminology& terminology) {
  const Term* term = findTerm(Term::Kind::className, code, terminology);
  return term != nullptr && !term->plural.empty() ? std::string(term->plural)
                                                  : "every " + wordsFor(Term::Kind::className, code, terminology);
}

std::string_view operatorWords(TestOperator comparison) {
  switch (comparison) {
  case TestOperator::equals:
    return "=";
  case TestOperator::greaterThan:
    return ">";
  case TestOperator::atLeast:
    return "≥";
  case TestOperator::lessThan:
    return "<";
  case TestOperator::atMost:
    return "≤";
  case TestOperator::beginsWith:
    return "starts with";
  case TestOperator::endsWith:
    return "ends with";
  case TestOperator::contains:
    return "contains";
  case TestOperator::isContainedBy:
    return "is in";
  }
  return "?";
}

std::string testText(const SpecifierTest& test, const Terminology& terminology) {
  switch (test.kind) {
  case SpecifierTest::Kind::comparison:
    return fmt::format("{} {} {}", valueText(test.left, terminology), operatorWords(test.comparison),
                       valueText(test.right, terminology));
  case SpecifierTest::Kind::negation:
    return test.operands.empty() ? "not" : fmt::format("not ({})", testText(*test.operands.front(), terminology));
  case SpecifierTest::Kind::both:
  case SpecifierTest::Kind::either: {
    std::string text;
    for (const auto& operand : test.operands) {
      if (!text.empty())
        text += test.kind == SpecifierTest::Kind::both ? " and " : " or ";
      text += testText(*operand, terminology);
    }
    return text;
  }
  }
  return {};
}

/// The step itself, without its container and its test.
std::string stepText(const ObjectSpecifier& specifier, const Terminology& terminology) {
  const auto className = [&] { return wordsFor(Term::Kind::className, specifier.desiredClass, terminology); };
  switch (specifier.form) {
  case Form::application:
    return "application";
  case Form::tested:
    return "it";
  case Form::property:
    return wordsFor(Term::Kind::property, specifier.desiredClass, terminology);
  case Form::index:
  case Form::name:
    return fmt::format("{} {}", className(), valueText(specifier.key, terminology));
  case Form::id:
    return fmt::format("{} id {}", className(), valueText(specifier.key, terminology));
  case Form::middle:
    return "middle " + className();
  case Form::some:
    return "some " + className();
  case Form::every:
    return specifier.test ? "every " + className() : pluralFor(specifier.desiredClass, terminology);
  case Form::range:
    return fmt::format("{} {} thru {}", pluralFor(specifier.desiredClass, terminology),
                       valueText(specifier.key, terminology), valueText(specifier.rangeEnd, terminology));
  case Form::before:
    return fmt::format("{} before", className());
  case Form::after:
    return fmt::format("{} after", className());
  case Form::beginning:
    return "beginning";
  case Form::end:
    return "end";
  }
  return {};
}

} // namespace

std::string specifierText(const ObjectSpecifier& specifier, const Terminology& terminology) {
  std::string text = stepText(specifier, terminology);
  const ObjectSpecifier* container = specifier.container.get();
  if (container != nullptr && container->form != Form::application && container->form != Form::tested) {
    const bool isBeside = specifier.form == Form::before || specifier.form == Form::after;
    text += isBeside ? " " : " of ";
    text += specifierText(*container, terminology);
  }
  if (specifier.test)
    text += " whose " + testText(*specifier.test, terminology);
  return text;
}

std::string valueText(const Value& value, const Terminology& terminology) {
  if (const auto* specifier = value.get<Value::SpecifierPointer>())
    return specifierText(**specifier, terminology);
  return applescript::shortSourceForm(value);
}

} // namespace tabwright::scripting
