#include "applescript/syntax/Children.h"
#include "applescript/syntax/Printer.h"
#include "applescript/values/Numbers.h"

#include <fmt/core.h>

#include <array>
#include <string_view>

// One statement a line, indented by two blanks per block; expressions as nested brackets with the node's kind in front.
// Everything that makes two trees differ is shown, and nothing that doesn't: neither ranges nor the way a thing was
// written.
namespace tabwright::applescript {

namespace {

std::string_view operatorName(Binary::Operator op) {
  static constexpr auto names = std::to_array<std::string_view>(
      {"+",     "-",         "*",           "/",         "div", "mod", "^",        "&",
       "=",     "≠",         "<",           "≤",         ">",   "≥",   "contains", "does-not-contain",
       "is-in", "is-not-in", "begins-with", "ends-with", "and", "or"});
  static_assert(names.size() == static_cast<std::size_t>(Binary::Operator::logicalOr) + 1);
  return names[static_cast<std::size_t>(op)];
}

std::string_view formName(ElementAccess::Form form) {
  static constexpr auto names = std::to_array<std::string_view>(
      {"index", "first", "last", "middle", "some", "every", "name", "id", "range", "before", "after"});
  static_assert(names.size() == static_cast<std::size_t>(ElementAccess::Form::after) + 1);
  return names[static_cast<std::size_t>(form)];
}

std::string_view whereName(InsertionPoint::Where where) {
  static constexpr auto names = std::to_array<std::string_view>({"beginning", "end", "before", "after"});
  static_assert(names.size() == static_cast<std::size_t>(InsertionPoint::Where::after) + 1);
  return names[static_cast<std::size_t>(where)];
}

std::string inQuotes(std::string_view text) {
  std::string result = "\"";
  for (const char character : text) {
    if (character == '\n')
      result += "\\n";
    else if (character == '"' || character == '\\')
      (result += '\\') += character;
    else
      result += character;
  }
  return result + '"';
}

std::string dumpLabel(const Label& label) {
  return label.code == 0 ? label.name : label.name + "'" + toString(label.code) + "'";
}

std::string dump(const Value& value) {
  if (const auto* text = value.text())
    return inQuotes(*text);
  if (const auto* integer = value.get<std::int64_t>())
    return std::to_string(*integer);
  if (const auto* real = value.get<double>())
    return realText(*real);
  if (const auto* boolean = value.get<bool>())
    return *boolean ? "true" : "false";
  if (const auto* name = value.get<Value::ClassPointer>())
    return fmt::format("class:{}'{}'", (*name)->words, toString((*name)->code));
  if (const auto* constant = value.get<Value::EnumeratorPointer>())
    return fmt::format("constant:{}'{}'", (*constant)->words, toString((*constant)->code));
  return value.isNull() ? "null" : "missing";
}

class Dumper {
public:
  std::string run(const Block& body) {
    block(body);
    return std::move(out_);
  }

private:
  void block(const Block& body) {
    ++depth_;
    for (const auto& statement : body)
      print(*statement);
    --depth_;
  }
  void line(std::string_view text) {
    out_.append(2 * (depth_ - 1), ' ');
    out_ += text;
    out_ += '\n';
  }

  static std::string of(const Expression& expression);
  static std::string of(const ExpressionPointer& expression) { return expression ? of(*expression) : "-"; }
  static std::string part(std::string_view name, const ExpressionPointer& expression) {
    return expression ? fmt::format(" {}{}{}", name, name.empty() ? "" : " ", of(*expression)) : std::string();
  }
  static std::string part(std::string_view name, const std::unique_ptr<Variable>& variable) {
    return variable ? fmt::format(" {}{}{}", name, name.empty() ? "" : " ", of(*variable)) : std::string();
  }
  static std::string of(const Parameter& parameter) {
    return of(parameter.pattern) + (parameter.defaultValue ? "=" + of(parameter.defaultValue) : "");
  }

  void print(const Statement& statement);
  void print(const If& statement);
  void print(const Repeat& statement);
  void print(const Try& statement);
  void print(const HandlerDefinition& handler);

  std::string out_;
  std::size_t depth_ = 0;
};

std::string Dumper::of(const Expression& expression) {
  std::string node;
  switch (expression.kind) {
  case Expression::Kind::literal: {
    const auto& literal = static_cast<const Literal&>(expression);
    return literal.words.empty() ? dump(literal.value) : literal.words;
  }
  case Expression::Kind::variable:
    return static_cast<const Variable&>(expression).name;
  case Expression::Kind::me:
    return "me";
  case Expression::Kind::it:
    return "it";
  case Expression::Kind::currentApplication:
    return "current-application";
  case Expression::Kind::list:
    node = "list";
    break;
  case Expression::Kind::record: {
    node = "(record";
    for (const auto& [label, value] : static_cast<const RecordLiteral&>(expression).fields)
      node += fmt::format(" {}:{}", dumpLabel(label), of(value));
    return node + ")";
  }
  case Expression::Kind::application: {
    const auto& reference = static_cast<const ApplicationReference&>(expression);
    node = reference.by == ApplicationReference::By::id ? "application-id" : "application";
    break;
  }
  case Expression::Kind::property: {
    const auto& access = static_cast<const PropertyAccess&>(expression);
    return fmt::format("(property {}{})", dumpLabel(access.property), part("of", access.container));
  }
  case Expression::Kind::element: {
    const auto& element = static_cast<const ElementAccess&>(expression);
    return fmt::format("({} {}'{}'{}{}{}{})", element.isIndexWritten ? "by-index" : formName(element.form),
                       element.elementClass.words, toString(element.elementClass.code), part("at", element.key),
                       part("thru", element.rangeEnd), part("whose", element.test), part("of", element.container));
  }
  case Expression::Kind::insertionPoint: {
    const auto& point = static_cast<const InsertionPoint&>(expression);
    return fmt::format("(place {}{})", whereName(point.where), part("of", point.container));
  }
  case Expression::Kind::referenceTo:
    node = "reference-to";
    break;
  case Expression::Kind::unary: {
    const auto op = static_cast<const Unary&>(expression).op;
    node = op == Unary::Operator::negate ? "negate" : op == Unary::Operator::plus ? "plus" : "not";
    break;
  }
  case Expression::Kind::binary:
    node = operatorName(static_cast<const Binary&>(expression).op);
    break;
  case Expression::Kind::coercion:
    node = "as";
    break;
  case Expression::Kind::handlerCall: {
    const auto& call = static_cast<const HandlerCall&>(expression);
    node = "(call " + call.name;
    if (call.target == HandlerCall::Target::me)
      node += " my";
    node += part("on", call.object) + (call.isLabelled ? " labelled" : "");
    for (const auto& argument : call.arguments)
      node += " " + of(argument);
    node += part("of", call.direct);
    for (const auto& [label, value] : call.labelled)
      node += fmt::format(" {}:{}", label, of(value));
    return node + ")";
  }
  case Expression::Kind::command: {
    const auto& command = static_cast<const Command&>(expression);
    node = fmt::format("(command {}'{}{}'{}", command.term->words, toString(command.term->event.eventClass),
                       toString(command.term->event.eventID), part("direct", command.direct));
    for (const auto& [parameter, value] : command.parameters)
      node += fmt::format(" {}:{}", toString(parameter.code), of(value));
    return node + ")";
  }
  case Expression::Kind::message: {
    const auto& message = static_cast<const ObjectiveCMessage&>(expression);
    node = "(message " + of(message.receiver);
    for (std::size_t i = 0; i < message.parts.size(); ++i)
      node += fmt::format(" {}:{}", message.parts[i], of(message.arguments[i]));
    return node + ")";
  }
  case Expression::Kind::parenthesized:
    node = "brackets";
    break;
  }
  forEachChild(expression, [&](const Expression& child) { (node += ' ') += of(child); });
  return "(" + node + ")";
}

void Dumper::print(const Statement& statement) {
  switch (statement.kind) {
  case Statement::Kind::expression:
    return line(of(static_cast<const ExpressionStatement&>(statement).expression));
  case Statement::Kind::set: {
    const auto& assignment = static_cast<const Assignment&>(statement);
    return line(fmt::format("{} {} := {}", assignment.form == Assignment::Form::set ? "set" : "copy",
                            of(assignment.target), of(assignment.value)));
  }
  case Statement::Kind::ifElse:
    return print(static_cast<const If&>(statement));
  case Statement::Kind::repeat:
    return print(static_cast<const Repeat&>(statement));
  case Statement::Kind::exitRepeat:
    return line("exit-repeat");
  case Statement::Kind::continueHandler:
    return line("continue " + of(static_cast<const ContinueStatement&>(statement).call));
  case Statement::Kind::tell: {
    const auto& tell = static_cast<const Tell&>(statement);
    line((tell.onOneLine ? "tell-to " : "tell ") + of(tell.target));
    return block(tell.body);
  }
  case Statement::Kind::tryBlock:
    return print(static_cast<const Try&>(statement));
  case Statement::Kind::returning:
    return line("return" + part("", static_cast<const Return&>(statement).value));
  case Statement::Kind::error: {
    const auto& error = static_cast<const RaiseError&>(statement);
    return line("error" + part("message", error.message) + part("number", error.number) + part("from", error.from) +
                part("partial", error.partialResult) + part("to", error.to));
  }
  case Statement::Kind::considering: {
    const auto& considering = static_cast<const Considering&>(statement);
    std::string text = "considering";
    for (const auto attribute : considering.considered)
      text += fmt::format(" +{}", static_cast<int>(attribute));
    for (const auto attribute : considering.ignored)
      text += fmt::format(" -{}", static_cast<int>(attribute));
    line(text);
    return block(considering.body);
  }
  case Statement::Kind::timeout: {
    const auto& timeout = static_cast<const Timeout&>(statement);
    line("timeout " + of(timeout.seconds));
    return block(timeout.body);
  }
  case Statement::Kind::transaction: {
    const auto& transaction = static_cast<const Transaction&>(statement);
    line("transaction" + part("session", transaction.session));
    return block(transaction.body);
  }
  case Statement::Kind::usingTerms: {
    const auto& usingTerms = static_cast<const UsingTerms&>(statement);
    line("using-terms " + of(usingTerms.application));
    return block(usingTerms.body);
  }
  case Statement::Kind::declare: {
    const auto& declare = static_cast<const Declare&>(statement);
    std::string text = declare.scope == Declare::Scope::global ? "global" : "local";
    for (const auto& variable : declare.variables)
      text += " " + variable->name;
    return line(text);
  }
  case Statement::Kind::property: {
    const auto& property = static_cast<const PropertyDefinition&>(statement);
    return line(fmt::format("property {} := {}", dumpLabel(property.name), of(property.value)));
  }
  case Statement::Kind::handler:
    return print(static_cast<const HandlerDefinition&>(statement));
  case Statement::Kind::script: {
    const auto& script = static_cast<const ScriptDefinition&>(statement);
    line("script " + script.name);
    return block(script.body);
  }
  case Statement::Kind::use: {
    const auto& use = static_cast<const Use&>(statement);
    return line(fmt::format("use {} {}{}{}{}{}", static_cast<int>(use.what), inQuotes(use.name), use.byID ? " id" : "",
                            use.version ? " version " + inQuotes(*use.version) : "",
                            use.alias.empty() ? "" : " as " + use.alias, use.imports ? "" : " without-importing"));
  }
  }
}

void Dumper::print(const If& statement) {
  std::string_view word = statement.onOneLine ? "if-then " : "if ";
  for (const If::Branch& branch : statement.branches) {
    line(std::string(word) + of(branch.condition));
    block(branch.body);
    word = "else-if ";
  }
  if (statement.otherwise) {
    line("else");
    block(*statement.otherwise);
  }
}

void Dumper::print(const Repeat& statement) {
  static constexpr auto forms =
      std::to_array<std::string_view>({"forever", "times", "while", "until", "range", "items"});
  line(fmt::format("repeat-{}{}{}{}{}{}{}", forms[static_cast<std::size_t>(statement.form)],
                   part("", statement.condition), part("", statement.variable), part("from", statement.from),
                   part("to", statement.to), part("by", statement.by), part("in", statement.items)));
  block(statement.body);
}

void Dumper::print(const Try& statement) {
  line("try");
  block(statement.body);
  if (!statement.hasHandler)
    return;
  line("on-error" + part("message", statement.message) + part("number", statement.number) +
       part("only", statement.onlyNumber) + part("from", statement.from) + part("partial", statement.partialResult) +
       part("to", statement.to));
  block(statement.handler);
}

void Dumper::print(const HandlerDefinition& handler) {
  std::string text = "on " + handler.name + (handler.isLabelled ? " labelled" : "");
  for (const Parameter& parameter : handler.positional)
    text += " " + of(parameter);
  if (handler.direct)
    text += " direct " + of(*handler.direct);
  for (const auto& [label, parameter] : handler.labelled)
    text += fmt::format(" {}:{}", label, of(parameter));
  line(text);
  block(handler.body);
}

} // namespace

std::string dump(const SyntaxTree& tree) {
  return Dumper().run(tree.body);
}

} // namespace tabwright::applescript
