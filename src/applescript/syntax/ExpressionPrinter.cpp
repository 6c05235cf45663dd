#include "applescript/syntax/ExpressionPrinter.h"

#include "applescript/lexer/Keyword.h"
#include "applescript/syntax/NumberForm.h"
#include "applescript/syntax/Operators.h"

#include <algorithm>
#include <cctype>
#include <utility>

// Brackets are nodes of the tree, so nothing here weighs precedences: what was parsed without brackets is printed
// without.
namespace tabwright::applescript {

namespace {

bool isPlainName(std::string_view name) {
  const auto isLetter = [](char character) {
    return std::isalnum(static_cast<unsigned char>(character)) || character == '_';
  };
  return !name.empty() && !std::isdigit(static_cast<unsigned char>(name.front())) && std::ranges::all_of(name, isLetter);
}

std::string escaped(std::string_view value, char quote) {
  std::string text(1, quote);
  for (const char character : value) {
    switch (character) {
    case '\r':
      text += "\\r";
      break;
    case '\t':
      text += "\\t";
      break;
    case '\\':
      text += "\\\\";
      break;
    default:
      if (character == quote)
        text += '\\';
      text += character;
    }
  }
  return text + quote;
}

} // namespace

std::string ExpressionPrinter::text(std::string_view value) {
  return escaped(value, '"');
}

std::string ExpressionPrinter::name(std::string_view name) const {
  const bool isTerm = std::ranges::any_of(
      tree_.terminologies, [&](const Terminology* terminology) { return terminology->hasFirstWord(name); });
  if (isPlainName(name) && findKeyword(name) == Keyword::none && !isTerm)
    return std::string(name);
  return escaped(name, '|');
}

std::string ExpressionPrinter::label(const Label& label) const {
  return label.code == 0 ? name(label.name) : label.name;
}

std::string ExpressionPrinter::print(const Expression& expression) const {
  switch (expression.kind) {
  case Expression::Kind::literal:
    return literal(static_cast<const Literal&>(expression));
  case Expression::Kind::list:
    return list(static_cast<const ListLiteral&>(expression));
  case Expression::Kind::record:
    return record(static_cast<const RecordLiteral&>(expression));
  case Expression::Kind::variable:
    return name(static_cast<const Variable&>(expression).name);
  case Expression::Kind::me:
    return "me";
  case Expression::Kind::it:
    return "it";
  case Expression::Kind::currentApplication:
    return "current application";
  case Expression::Kind::application: {
    const auto& reference = static_cast<const ApplicationReference&>(expression);
    return (reference.by == ApplicationReference::By::id ? "application id " : "application ") +
           print(*reference.designation);
  }
  case Expression::Kind::property:
    return property(static_cast<const PropertyAccess&>(expression));
  case Expression::Kind::element:
    return element(static_cast<const ElementAccess&>(expression));
  case Expression::Kind::insertionPoint:
    return insertionPoint(static_cast<const InsertionPoint&>(expression));
  case Expression::Kind::referenceTo:
    return "a reference to " + print(*static_cast<const ReferenceTo&>(expression).operand);
  case Expression::Kind::unary: {
    const auto& unary = static_cast<const Unary&>(expression);
    const std::string operand = print(*unary.operand);
    if (unary.op == Unary::Operator::logicalNot)
      return "not " + operand;
    const std::string sign = unary.op == Unary::Operator::negate ? "-" : "+";
    return sign + (operand.starts_with('-') ? " " : "") + operand; // two signs without a blank begin a comment
  }
  case Expression::Kind::binary: {
    const auto& binary = static_cast<const Binary&>(expression);
    return print(*binary.left) + " " + std::string(sourceForm(binary.op)) + " " + print(*binary.right);
  }
  case Expression::Kind::coercion: {
    const auto& coercion = static_cast<const Coercion&>(expression);
    return print(*coercion.operand) + " as " + print(*coercion.type);
  }
  case Expression::Kind::handlerCall:
    return call(static_cast<const HandlerCall&>(expression));
  case Expression::Kind::command:
    return command(static_cast<const Command&>(expression));
  case Expression::Kind::message:
    return message(static_cast<const ObjectiveCMessage&>(expression));
  case Expression::Kind::parenthesized:
    return "(" + print(*static_cast<const Parenthesized&>(expression).inner) + ")";
  }
  return {};
}

std::string ExpressionPrinter::literal(const Literal& literal) const {
  if (!literal.words.empty())
    return literal.words;
  const Value& value = literal.value;
  if (const auto* written = value.text())
    return text(*written);
  if (const auto* integer = value.get<std::int64_t>())
    return std::to_string(*integer);
  if (const auto* real = value.get<double>())
    return numberForm(*real);
  if (const auto* boolean = value.get<bool>())
    return *boolean ? "true" : "false";
  if (const auto* name = value.get<Value::ClassPointer>())
    return (*name)->words;
  if (const auto* constant = value.get<Value::EnumeratorPointer>())
    return (*constant)->words;
  return value.isNull() ? "null" : "missing value";
}

std::string ExpressionPrinter::list(const ListLiteral& list) const {
  std::string items;
  for (const auto& item : list.items)
    items += (items.empty() ? "" : ", ") + print(*item);
  return "{" + items + "}";
}

std::string ExpressionPrinter::record(const RecordLiteral& record) const {
  std::string fields;
  for (const auto& [fieldLabel, value] : record.fields)
    fields += (fields.empty() ? "" : ", ") + label(fieldLabel) + ":" + print(*value);
  return "{" + fields + "}";
}

// ----------------------------------------------------------------- references

std::string ExpressionPrinter::inContainer(std::string reference, const ExpressionPointer& container) const {
  if (!container)
    return reference;
  if (container->kind == Expression::Kind::it)
    return "its " + reference;
  if (container->kind == Expression::Kind::me)
    return "my " + reference;
  // What can't stand behind `of` without catching what follows it stands in front.
  if (container->kind == Expression::Kind::message)
    return print(*container) + "'s " + reference;
  return std::move(reference) + " of " + print(*container);
}

std::string ExpressionPrinter::property(const PropertyAccess& access) const {
  return inContainer(label(access.property), access.container);
}

std::string ExpressionPrinter::element(const ElementAccess& element) const {
  using Form = ElementAccess::Form;
  const std::string& words = element.elementClass.words;
  std::string reference;
  switch (element.form) {
  case Form::index:
    reference = words + " " + print(*element.key);
    break;
  case Form::name:
    reference = words + " named " + print(*element.key);
    break;
  case Form::id:
    reference = words + " id " + print(*element.key);
    break;
  case Form::first:
    reference = "first " + words;
    break;
  case Form::last:
    reference = "last " + words;
    break;
  case Form::middle:
    reference = "middle " + words;
    break;
  case Form::some:
    reference = "some " + words;
    break;
  case Form::every:
    reference = "every " + words;
    break;
  case Form::range: {
    const bool byElements = element.rangeKeysAreReferences();
    reference = words + (byElements ? " from " : " ") + print(*element.key) + (byElements ? " to " : " thru ") +
                print(*element.rangeEnd);
    break;
  }
  case Form::before:
  case Form::after:
    reference = words + (element.form == Form::before ? " before " : " after ") + print(*element.container);
    return element.test ? reference + " whose " + print(*element.test) : reference;
  }
  reference = inContainer(std::move(reference), element.container);
  return element.test ? reference + " whose " + print(*element.test) : reference;
}
} // namespace tabwright::applescript
