#include "applescript/syntax/ExpressionPrinter.h"

#include "applescript/lexer/Keyword.h"
#include "applescript/syntax/Operators.h"
#include "applescript/values/Names.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

// Brackets, and the way a reference was joined to its container, are in the tree. So nothing here weighs precedences:
// what was parsed without brackets is printed without, and parses again as it did. References are written in two pieces
// (Parts), since a `'s` stands behind the container's own words and in front of its ` of …`.
namespace tabwright::applescript {

namespace {

/// A text or name in its quotes, as the lexer reads it back. A line feed stays: texts may go over several lines.
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

/// `first`, `last`, `2nd`, `11th`.
std::string ordinal(std::int64_t number) {
  if (number == 1 || number == -1)
    return number == 1 ? "first" : "last";
  const bool isTeen = number % 100 >= 11 && number % 100 <= 13;
  const std::string_view ending = isTeen             ? "th"
                                  : number % 10 == 1 ? "st"
                                  : number % 10 == 2 ? "nd"
                                  : number % 10 == 3 ? "rd"
                                                     : "th";
  return fmt::format("{}{}", number, ending);
}

/// A key that can stand directly behind a class.
bool isPlainKey(const Expression& key) {
  const auto* literal = as<Literal>(key);
  return as<Variable>(key) || as<Unary>(key) || as<Parenthesized>(key) ||
         (literal && literal->words.empty() && (literal->value.text() || asReal(literal->value)));
}

} // namespace

std::string ExpressionPrinter::text(std::string_view value) {
  return escaped(value, '"');
}

std::string ExpressionPrinter::name(std::string_view name) const {
  // The dictionaries that hold at the name's place aren't known here, so bars are put where one of the tree has any
  // term with that first word. They don't change what a name means.
  const bool isTerm = std::ranges::any_of(
      tree_.terminologies, [&](const Terminology* terminology) { return terminology->hasFirstWord(name); });
  const Keyword keyword = findKeyword(name);
  const bool isHarmless =
      keyword == Keyword::none || keyword == Keyword::a || keyword == Keyword::current || keyword == Keyword::result;
  if (isIdentifier(name) && isHarmless && !isTerm)
    return std::string(name);
  return escaped(name, '|');
}

std::string ExpressionPrinter::label(const Label& label) const {
  return label.code == 0 ? name(label.name) : label.name;
}

std::string ExpressionPrinter::handlerName(std::string_view name) const {
  const bool isCommand = std::ranges::any_of(languageTerminology().rows(), [&](const Term& term) {
    return term.kind == Term::Kind::command && term.words == name;
  });
  return isCommand ? std::string(name) : this->name(name);
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
  case Expression::Kind::element:
  case Expression::Kind::insertionPoint:
  case Expression::Kind::handlerCall:
  case Expression::Kind::message: {
    Parts pieces = parts(expression);
    return std::move(pieces.head) + pieces.rest;
  }
  case Expression::Kind::referenceTo:
    return "a reference to " + print(*static_cast<const ReferenceTo&>(expression).operand);
  case Expression::Kind::unary:
    return unary(static_cast<const Unary&>(expression));
  case Expression::Kind::binary:
    return binary(static_cast<const Binary&>(expression));
  case Expression::Kind::coercion: {
    const auto& coercion = static_cast<const Coercion&>(expression);
    return print(*coercion.operand) + " as " + print(*coercion.type);
  }
  case Expression::Kind::command:
    return command(static_cast<const Command&>(expression));
  case Expression::Kind::parenthesized:
    return "(" + print(*static_cast<const Parenthesized&>(expression).inner) + ")";
  }
  return {};
}

std::string ExpressionPrinter::unary(const Unary& unary) const {
  const std::string operand = print(*unary.operand);
  if (unary.op == Unary::Operator::logicalNot)
    return "not " + operand;
  const std::string sign = unary.op == Unary::Operator::negate ? "-" : "+";
  return sign + (operand.starts_with('-') ? " " : "") + operand; // two signs without a blank begin a comment
}

std::string ExpressionPrinter::binary(const Binary& binary) const {
  return print(*binary.left) + " " + std::string(sourceForm(binary.op)) +
         breakOr(" ", binary.left->range.end(), binary.right->range.offset) + print(*binary.right);
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
    return realText(*real);
  if (const auto* boolean = value.get<bool>())
    return *boolean ? "true" : "false";
  if (const auto* name = value.get<Value::ClassPointer>())
    return (*name)->words;
  if (const auto* constant = value.get<Value::EnumeratorPointer>())
    return (*constant)->words;
  // Literals have no other values.
  return value.isNull() ? "null" : "missing value";
}

std::string ExpressionPrinter::breakOr(std::string_view otherwise, std::size_t from, std::size_t to) const {
  // The lexer drops the sign, so the source between two parts tells.
  const bool isContinued = from < to && std::string_view(tree_.source).substr(from, to - from).contains("¬");
  return isContinued ? " ¬\n" + std::string(depth + 1, '\t') : std::string(otherwise);
}

std::string ExpressionPrinter::list(const ListLiteral& list) const {
  std::string items;
  std::size_t end = list.range.offset;
  for (const auto& item : list.items) {
    items += (items.empty() ? "" : ",") + breakOr(items.empty() ? "" : " ", end, item->range.offset) + print(*item);
    end = item->range.end();
  }
  return "{" + items + breakOr("", end, list.range.end()) + "}";
}

std::string ExpressionPrinter::record(const RecordLiteral& record) const {
  std::string fields;
  std::size_t end = record.range.offset;
  for (const auto& [fieldLabel, value] : record.fields) {
    fields += (fields.empty() ? "" : ",") + breakOr(fields.empty() ? "" : " ", end, value->range.offset) +
              label(fieldLabel) + ":" + print(*value);
    end = value->range.end();
  }
  return "{" + fields + breakOr("", end, record.range.end()) + "}";
}

// ----------------------------------------------------------------- references

ExpressionPrinter::Parts ExpressionPrinter::parts(const Expression& expression) const {
  switch (expression.kind) {
  case Expression::Kind::property: {
    const auto& access = static_cast<const PropertyAccess&>(expression);
    return joined(label(access.property), access.container, access.joint);
  }
  case Expression::Kind::element:
    return element(static_cast<const ElementAccess&>(expression));
  case Expression::Kind::insertionPoint:
    return insertionPoint(static_cast<const InsertionPoint&>(expression));
  case Expression::Kind::handlerCall:
    return call(static_cast<const HandlerCall&>(expression));
  case Expression::Kind::message:
    return message(static_cast<const ObjectiveCMessage&>(expression));
  default:
    return {print(expression), {}};
  }
}

ExpressionPrinter::Parts ExpressionPrinter::joined(std::string member, const ExpressionPointer& container,
                                                   Joint joint) const {
  if (!container)
    return {std::move(member), {}};
  if (joint != Joint::possessive)
    return {std::move(member), (joint == Joint::of ? " of " : " in ") + print(*container)};
  if (as<It>(*container))
    return {"its " + member, {}};
  if (as<Me>(*container))
    return {"my " + member, {}};
  // `'s` joins the container's head: in `a's b of c` the container of b is a, and that of a is c.
  Parts pieces = parts(*container);
  pieces.head += "'s " + member;
  return pieces;
}

ExpressionPrinter::Parts ExpressionPrinter::element(const ElementAccess& element) const {
  using Form = ElementAccess::Form;
  // `tab before tab 3`: the container stands in the words already.
  const bool isRelative = element.form == Form::before || element.form == Form::after;
  Parts pieces =
      isRelative ? Parts{elementWords(element), {}} : joined(elementWords(element), element.container, element.joint);
  if (!element.test)
    return pieces;
  return {pieces.head + pieces.rest + " whose " + print(*element.test), {}};
}

std::string ExpressionPrinter::elementWords(const ElementAccess& element) const {
  using Form = ElementAccess::Form;
  // `application 3` would name an application but behind `'s`; its plural with a key is an element like any other.
  const bool isMember = element.container && element.joint == Joint::possessive;
  const bool isApplication =
      element.elementClass.words == "application" && element.key && !element.isOrdinal && !isMember;
  const std::string words = isApplication ? "applications" : element.elementClass.words;
  switch (element.form) {
  case Form::index:
    if (element.isOrdinal) {
      // The parser makes an ordinal's key of a literal integer always.
      const auto number = *static_cast<const Literal&>(*element.key).value.get<std::int64_t>();
      return ordinal(number) + " " + element.elementClass.words;
    }
    // Without the word, a key that turns out to be a text would be a name.
    if (element.isIndexWritten)
      return words + " index " + print(*element.key);
    break;
  case Form::name:
    return words + " named " + print(*element.key);
  case Form::range:
    // `characters 1 thru 3` takes plain keys only; from one reference to another it is `from … to …`.
    if (!isPlainKey(*element.key) || !isPlainKey(*element.rangeEnd))
      return words + " from " + print(*element.key) + " to " + print(*element.rangeEnd);
    return wordsBeforeKey(ObjectSpecifier::Form::range, {words, pluralOf(element.elementClass)}) + print(*element.key) +
           " thru " + print(*element.rangeEnd);
  case Form::before:
    return words + " before " + print(*element.container);
  case Form::after:
    return words + " after " + print(*element.container);
  default:
    break;
  }
  return wordsBeforeKey(element.form, {words, words}) + (element.key ? print(*element.key) : "");
}

std::string_view ExpressionPrinter::pluralOf(const ClassName& name) const {
  for (const Terminology* terminology : tree_.terminologies) {
    const Term* term = terminology->findCode(Term::Kind::className, name.code);
    if (term && term->words == name.words && !term->plural.empty())
      return term->plural;
  }
  return name.words;
}

ExpressionPrinter::Parts ExpressionPrinter::insertionPoint(const InsertionPoint& point) const {
  const std::string words = wordsBeforeKey(point.form, {});
  if (point.form == InsertionPoint::Form::beginning || point.form == InsertionPoint::Form::end)
    return joined(words, point.container, point.joint);
  return {(point.form == InsertionPoint::Form::before ? "before " : "after ") + print(*point.container), {}};
}

// ---------------------------------------------------------- calls and commands

ExpressionPrinter::Parts ExpressionPrinter::call(const HandlerCall& call) const {
  std::string text = name(call.name);
  if (call.isLabelled) {
    if (call.direct)
      text += " of " + print(*call.direct);
    text += labelled(call.labelled, [this](const ExpressionPointer& value) { return print(*value); });
  } else {
    std::string arguments;
    // No line is continued in front of the first argument.
    std::size_t end = std::string::npos;
    for (const auto& argument : call.arguments) {
      arguments += arguments.empty() ? "" : "," + breakOr(" ", end, argument->range.offset);
      arguments += print(*argument);
      end = argument->range.end();
    }
    text += "(" + arguments + ")";
  }
  switch (call.target) {
  case HandlerCall::Target::implicit:
    return {std::move(text), {}};
  case HandlerCall::Target::me:
    return {"my " + text, {}};
  case HandlerCall::Target::object:
    return joined(std::move(text), call.object, call.joint);
  }
  return {};
}

ExpressionPrinter::Parts ExpressionPrinter::message(const ObjectiveCMessage& message) const {
  std::string text;
  for (std::size_t i = 0; i < message.parts.size(); ++i)
    text += (i == 0 ? "" : " ") + name(message.parts[i]) + ":" + print(*message.arguments[i]);
  return joined(std::move(text), message.receiver, Joint::possessive);
}

std::string ExpressionPrinter::command(const Command& command) const {
  std::string text(command.term->words);
  // `window 1 exists`.
  if (command.form == Command::Form::objectFirst)
    return print(*command.direct) + " " + text;
  // Parameters of a raw event are written `given «class kocl»:x, «class insh»:y`.
  const bool isRaw = text.starts_with("«");
  std::size_t end = command.range.offset;
  if (command.direct) {
    text += (command.form == Command::Form::withOf ? " of" : "") + breakOr(" ", end, command.direct->range.offset);
    text += print(*command.direct);
    end = command.direct->range.end();
  }
  bool isFirst = true;
  for (const auto& [parameter, value] : command.parameters) {
    text += isRaw && !isFirst ? "," : "";
    text += breakOr(" ", end, value->range.offset) + (isRaw && isFirst ? "given " : "");
    text += std::string(parameter.words) + (isRaw ? ":" : " ") + print(*value);
    end = value->range.end();
    isFirst = false;
  }
  return text;
}

} // namespace tabwright::applescript
