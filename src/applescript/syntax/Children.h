#pragma once

#include "applescript/syntax/Tree.h"

namespace tabwright::applescript {

/// Calls `visit` with every expression directly below another, in an order that is the same for all nodes of a kind and
/// mostly the order written; with none that is absent. Doesn't go deeper: that is for `visit` to do.
///
///     std::size_t nodes = 1;
///     forEachChild(expression, [&](const Expression& child) { nodes += countNodes(child); });
///
/// Children come as they may be changed, though `expression` itself is const, since the resolver fills in nodes below
/// it.
template <class Visit>
void forEachChild(const Expression& expression, Visit&& visit) {
  const auto one = [&](const ExpressionPointer& child) {
    if (child)
      visit(*child);
  };
  const auto all = [&](const std::vector<ExpressionPointer>& children) {
    for (const auto& child : children)
      one(child);
  };
  switch (expression.kind) {
  case Expression::Kind::literal:
  case Expression::Kind::variable:
  case Expression::Kind::me:
  case Expression::Kind::it:
  case Expression::Kind::currentApplication:
    return;
  case Expression::Kind::list:
    return all(static_cast<const ListLiteral&>(expression).items);
  case Expression::Kind::record:
    for (const auto& [label, value] : static_cast<const RecordLiteral&>(expression).fields)
      one(value);
    return;
  case Expression::Kind::application:
    return one(static_cast<const ApplicationReference&>(expression).designation);
  case Expression::Kind::property:
    return one(static_cast<const PropertyAccess&>(expression).container);
  case Expression::Kind::element: {
    const auto& element = static_cast<const ElementAccess&>(expression);
    one(element.key);
    one(element.rangeEnd);
    one(element.container);
    return one(element.test);
  }
  case Expression::Kind::insertionPoint:
    return one(static_cast<const InsertionPoint&>(expression).container);
  case Expression::Kind::referenceTo:
    return one(static_cast<const ReferenceTo&>(expression).operand);
  case Expression::Kind::unary:
    return one(static_cast<const Unary&>(expression).operand);
  case Expression::Kind::binary: {
    const auto& binary = static_cast<const Binary&>(expression);
    one(binary.left);
    return one(binary.right);
  }
  case Expression::Kind::coercion: {
    const auto& coercion = static_cast<const Coercion&>(expression);
    one(coercion.operand);
    return one(coercion.type);
  }
  case Expression::Kind::handlerCall: {
    const auto& call = static_cast<const HandlerCall&>(expression);
    one(call.object);
    all(call.arguments);
    one(call.direct);
    for (const auto& [label, value] : call.labelled)
      one(value);
    return;
  }
  case Expression::Kind::command: {
    const auto& command = static_cast<const Command&>(expression);
    one(command.direct);
    for (const auto& [parameter, value] : command.parameters)
      one(value);
    return;
  }
  case Expression::Kind::message: {
    const auto& message = static_cast<const ObjectiveCMessage&>(expression);
    one(message.receiver);
    return all(message.arguments);
  }
  case Expression::Kind::parenthesized:
    return one(static_cast<const Parenthesized&>(expression).inner);
  }
}

} // namespace tabwright::applescript
