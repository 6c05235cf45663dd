#include "applescript/TreeDump.h"

#include "applescript/syntax/Children.h"
#include "applescript/syntax/ConsideringWords.h"
#include "applescript/syntax/Operators.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::applescript::test {
namespace {

std::string withCode(std::string_view words, FourCharCode code) {
  return code == 0 ? std::string(words) : fmt::format("{}'{}'", words, toString(code));
}

std::string of(const Expression& expression);
std::string part(std::string_view name, const ExpressionPointer& expression) {
  return expression ? fmt::format(" {}{}{}", name, name.empty() ? "" : " ", of(*expression)) : std::string();
}

std::string of(const Literal& literal) {
  if (!literal.words.empty())
    return literal.words;
  if (const auto* name = literal.value.get<Value::ClassPointer>())
    return "class:" + withCode((*name)->words, (*name)->code);
  if (const auto* constant = literal.value.get<Value::EnumeratorPointer>())
    return "constant:" + withCode((*constant)->words, (*constant)->code);
  return sourceForm(literal.value);
}

std::string of(const ElementAccess& element) {
  using Form = ElementAccess::Form;
  const std::string form = element.isIndexWritten        ? "by-index "
                           : element.form == Form::index ? "index "
                           : element.form == Form::name  ? "name "
                                                         : wordsBeforeKey(element.form, {});
  return form + withCode(element.elementClass.words, element.elementClass.code) + part("at", element.key) +
         part("thru", element.rangeEnd) + part("whose", element.test) + part("of", element.container);
}

std::string of(const HandlerCall& call) {
  std::string text = fmt::format("call {}{}", call.name, call.target == HandlerCall::Target::me ? " my" : "") +
                     part("on", call.object) + part("of", call.direct);
  for (const auto& argument : call.arguments)
    text += part("", argument);
  for (const auto& [label, value] : call.labelled)
    text += fmt::format(" {}:{}", label, of(*value));
  return text;
}

std::string of(const Command& command) {
  const EventCode event = command.term->event;
  std::string text = fmt::format("command {}'{}{}'{}", command.term->words, toString(event.eventClass),
                                 toString(event.eventID), part("direct", command.direct));
  for (const auto& [parameter, value] : command.parameters)
    text += fmt::format(" {}:{}", toString(parameter.code), of(*value));
  return text;
}

std::string of(const ObjectiveCMessage& message) {
  std::string text = "message" + part("", message.receiver);
  for (std::size_t i = 0; i < message.parts.size(); ++i)
    text += fmt::format(" {}:{}", message.parts[i], of(*message.arguments[i]));
  return text;
}

std::string of(const RecordLiteral& record) {
  std::string text = "record";
  for (const auto& [label, value] : record.fields)
    text += fmt::format(" {}:{}", withCode(label.name, label.code), of(*value));
  return text;
}

/// The kind of a node that is told by its children alone.
std::string kindOf(const Expression& expression) {
  switch (expression.kind) {
  case Expression::Kind::list:
    return "list";
  case Expression::Kind::application:
    return static_cast<const ApplicationReference&>(expression).by == ApplicationReference::By::id ? "application-id"
                                                                                                   : "application";
  case Expression::Kind::unary:
    return static_cast<const Unary&>(expression).op == Unary::Operator::logicalNot ? "not" : "negate";
  case Expression::Kind::binary:
    return std::string(sourceForm(static_cast<const Binary&>(expression).op));
  case Expression::Kind::parenthesized:
    return "brackets";
  default:
    return fmt::format("kind {}", static_cast<int>(expression.kind));
  }
}

std::string of(const Expression& expression) {
  const auto bracketed = [](const auto& node) { return "(" + of(node) + ")"; };
  switch (expression.kind) {
  case Expression::Kind::literal:
    return of(static_cast<const Literal&>(expression));
  case Expression::Kind::variable:
    return static_cast<const Variable&>(expression).name;
  case Expression::Kind::it:
    return "it";
  case Expression::Kind::property: {
    const auto& access = static_cast<const PropertyAccess&>(expression);
    return fmt::format("(property {}{})", withCode(access.property.name, access.property.code),
                       part("of", access.container));
  }
  case Expression::Kind::element:
    return bracketed(static_cast<const ElementAccess&>(expression));
  case Expression::Kind::handlerCall:
    return bracketed(static_cast<const HandlerCall&>(expression));
  case Expression::Kind::command:
    return bracketed(static_cast<const Command&>(expression));
  case Expression::Kind::message:
    return bracketed(static_cast<const ObjectiveCMessage&>(expression));
  case Expression::Kind::record:
    return bracketed(static_cast<const RecordLiteral&>(expression));
  default: {
    std::string text = kindOf(expression);
    forEachChild(expression, [&](const Expression& child) { (text += ' ') += of(child); });
    return "(" + text + ")";
  }
  }
}

std::string attributesOf(const Considering& considering) {
  std::string text;
  for (const auto attribute : considering.considered)
    text += fmt::format(" +{}", consideringWords(attribute));
  for (const auto attribute : considering.ignored)
    text += fmt::format(" -{}", consideringWords(attribute));
  return text;
}

std::string of(const Use& use) {
  return fmt::format("use {} \"{}\"{}{}{}{}", static_cast<int>(use.what), use.name, use.byID ? " id" : "",
                     use.version ? " version \"" + *use.version + '"' : "", use.alias.empty() ? "" : " as " + use.alias,
                     use.imports ? "" : " without-importing");
}

std::string of(const HandlerDefinition& handler) {
  std::string text = "on " + handler.name;
  for (const Parameter& parameter : handler.positional)
    text += part("", parameter.pattern);
  return text + (handler.direct ? part("direct", handler.direct->pattern) : "");
}

std::string of(const Block& body, std::size_t depth);

std::string of(const Statement& statement, std::size_t depth) {
  const auto block = [&](std::string line, const Block& body) { return std::move(line) + "\n" + of(body, depth + 1); };
  switch (statement.kind) {
  case Statement::Kind::expression:
    return of(*static_cast<const ExpressionStatement&>(statement).expression) + "\n";
  case Statement::Kind::set: {
    const auto& assignment = static_cast<const Assignment&>(statement);
    return fmt::format("set {} := {}\n", of(*assignment.target), of(*assignment.value));
  }
  case Statement::Kind::ifElse: {
    const auto& branch = static_cast<const If&>(statement).branches.front();
    return block("if" + part("", branch.condition), branch.body);
  }
  case Statement::Kind::repeat: {
    const auto& repeat = static_cast<const Repeat&>(statement);
    return block(fmt::format("repeat {}{}", repeat.variable ? repeat.variable->name : "", part("in", repeat.items)),
                 repeat.body);
  }
  case Statement::Kind::tell: {
    const auto& tell = static_cast<const Tell&>(statement);
    return block((tell.onOneLine ? "tell-to" : "tell") + part("", tell.target), tell.body);
  }
  case Statement::Kind::returning:
    return "return" + part("", static_cast<const Return&>(statement).value) + "\n";
  case Statement::Kind::considering: {
    const auto& considering = static_cast<const Considering&>(statement);
    return block("considering" + attributesOf(considering), considering.body);
  }
  case Statement::Kind::usingTerms: {
    const auto& usingTerms = static_cast<const UsingTerms&>(statement);
    return block("using-terms" + part("", usingTerms.application), usingTerms.body);
  }
  case Statement::Kind::handler: {
    const auto& handler = static_cast<const HandlerDefinition&>(statement);
    return block(of(handler), handler.body);
  }
  case Statement::Kind::use:
    return of(static_cast<const Use&>(statement)) + "\n";
  default:
    return fmt::format("kind {}\n", static_cast<int>(statement.kind));
  }
}

std::string of(const Block& body, std::size_t depth) {
  std::string text;
  for (const auto& statement : body)
    text += std::string(2 * depth, ' ') + of(*statement, depth);
  return text;
}

} // namespace

std::string dump(const SyntaxTree& tree) {
  return of(tree.body, 0);
}

} // namespace tabwright::applescript::test
