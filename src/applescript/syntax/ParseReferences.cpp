#include "applescript/syntax/ScriptParser.h"

#include <ranges>
#include <utility>

// Chains of `of` and `'s`. `a of b of c` is read from the right (`a` of what `b of c` is), `c's b's a` from the left;
// both become the same tree, the outermost access at the top and its container below.
namespace tabwright::applescript {

namespace {

bool picksFromSeveral(const Expression& node) {
  if (node.kind != Expression::Kind::element)
    return false;
  const auto& element = static_cast<const ElementAccess&>(node);
  if (element.test)
    return false;
  switch (element.form) {
  case ElementAccess::Form::every:
  case ElementAccess::Form::first:
  case ElementAccess::Form::last:
  case ElementAccess::Form::some:
  case ElementAccess::Form::middle:
    return true;
  case ElementAccess::Form::index:
    return element.isOrdinal;
  case ElementAccess::Form::name:
  case ElementAccess::Form::id:
  case ElementAccess::Form::range:
  case ElementAccess::Form::before:
  case ElementAccess::Form::after:
    return false;
  }
  return false;
}

/// The places of a node's container and of its joint; null for a node that takes none.
struct ContainerSlot {
  ExpressionPointer* container = nullptr;
  Joint* joint = nullptr;
};

ContainerSlot slotOf(Expression& node) {
  const auto slot = [](auto& owner) { return ContainerSlot{&owner.container, &owner.joint}; };
  switch (node.kind) {
  case Expression::Kind::property:
    return slot(static_cast<PropertyAccess&>(node));
  case Expression::Kind::element:
    return slot(static_cast<ElementAccess&>(node));
  case Expression::Kind::insertionPoint:
    return slot(static_cast<InsertionPoint&>(node));
  case Expression::Kind::handlerCall: {
    auto& call = static_cast<HandlerCall&>(node);
    return call.target == HandlerCall::Target::me ? ContainerSlot{} : ContainerSlot{&call.object, &call.joint};
  }
  case Expression::Kind::message:
    return {&static_cast<ObjectiveCMessage&>(node).receiver, nullptr};
  default:
    return {};
  }
}

/// The name that a node with a container becomes when it is a variable, a class or a constant: `text of x`.
std::optional<Label> labelOf(const Expression& node) {
  if (node.kind == Expression::Kind::variable)
    return Label{0, static_cast<const Variable&>(node).name};
  if (node.kind != Expression::Kind::literal)
    return std::nullopt;
  const auto& literal = static_cast<const Literal&>(node);
  if (const auto* name = literal.value.get<Value::ClassPointer>())
    return Label{(*name)->code, (*name)->words};
  if (const auto* constant = literal.value.get<Value::EnumeratorPointer>())
    return Label{0, (*constant)->words};
  return literal.words.empty() ? std::nullopt : std::optional(Label{0, literal.words});
}

/// The innermost end of a reference takes a container.
bool canAttach(Expression& node) {
  const ContainerSlot slot = slotOf(node);
  return slot.container ? !*slot.container || canAttach(**slot.container) : labelOf(node).has_value();
}

} // namespace

ExpressionPointer ScriptParser::parseChain() {
  ExpressionPointer node = parseContained();
  if (token().is(Keyword::whose) || token().is(Keyword::where))
    parseTest(node);
  return node;
}

ExpressionPointer ScriptParser::parseContained() {
  const std::size_t start = offset();
  ExpressionPointer node = parsePossessives(parsePrimary());
  if (isOf() && canAttach(*node)) {
    const Nesting nesting(*this);
    const Joint joint = token().is(Keyword::of) ? Joint::of : Joint::in;
    advance();
    attach(node, parseContained(), joint);
    setRange(*node, start);
  }
  return node;
}

bool ScriptParser::isOf() const {
  return (token().is(Keyword::of) || token().is(Keyword::in)) && !isStopped();
}

ExpressionPointer ScriptParser::parsePossessives(ExpressionPointer head) {
  const std::size_t start = head->range.offset;
  while (token().kind == Token::Kind::possessive) {
    advance();
    ExpressionPointer member = parseMember();
    if (!canAttach(*member))
      throw expectedError("variable name or property", "expression", token());
    attach(member, std::move(head), Joint::possessive);
    setRange(*member, start);
    head = std::move(member);
  }
  return head;
}

// What may stand behind `'s`: a name of any kind, never a variable of the script.
ExpressionPointer ScriptParser::parseMember() {
  const Token& first = token();
  const std::size_t start = offset();
  if (isLabel())
    return parseMessage();
  if (first.is(Keyword::end) || first.is(Keyword::beginning))
    return parseKey();
  const bool isName = first.kind == Token::Kind::word || first.kind == Token::Kind::quotedName;
  if (isName && token(1).is(Symbol::openParenthesis) && !token(1).spaceBefore) { // even `string()` and `count()`
    advance();
    return parseCall(std::string(first.text), start);
  }
  if (first.kind != Token::Kind::word || isReserved(first.keyword) || startsLabelledArguments(first.text))
    return parsePrimary();

  const auto matches = scope_.match(rest());
  if (matches.find(Term::Kind::className))
    return parseTerm(matches);
  if (const auto* property = matches.find(Term::Kind::property)) {
    auto access = std::make_unique<PropertyAccess>();
    access->property = {property->term->code, std::string(property->term->words)};
    advance(property->words);
    return finish(std::move(access), start);
  }
  auto access = std::make_unique<PropertyAccess>();
  access->property = {0, std::string(first.text)};
  advance();
  return finish(std::move(access), start);
}

ExpressionPointer ScriptParser::parseMessage() {
  const std::size_t start = offset();
  auto message = std::make_unique<ObjectiveCMessage>();
  while (isLabel()) {
    message->parts.emplace_back(token().text);
    advance(2);
    message->arguments.push_back(parseExpression());
  }
  return finish(std::move(message), start);
}

// `my x`, `its x`. A call behind `my` is the script's own, and no message to an object.
ExpressionPointer ScriptParser::parseMemberOf(Expression::Kind owner) {
  const Nesting nesting(*this);
  const std::size_t start = offset();
  advance();
  const Token& name = token();
  const bool isMy = owner == Expression::Kind::me;
  const bool isName =
      name.kind == Token::Kind::quotedName || (name.kind == Token::Kind::word && !isReserved(name.keyword));
  auto container = std::make_unique<SimpleExpression>(owner);
  container->range = previous().range;
  if (isMy && isName && token(1).is(Symbol::openParenthesis)) {
    advance();
    ExpressionPointer call = parseCall(std::string(name.text), start);
    static_cast<HandlerCall&>(*call).target = HandlerCall::Target::me;
    return call;
  }
  ExpressionPointer member = parseMember();
  if (isMy && member->kind == Expression::Kind::handlerCall &&
      static_cast<const HandlerCall&>(*member).target == HandlerCall::Target::implicit) {
    static_cast<HandlerCall&>(*member).target = HandlerCall::Target::me;
  } else {
    if (!canAttach(*member))
      throw expectedError("variable name or property", describe(name), name);
    attach(member, std::move(container), Joint::possessive);
  }
  setRange(*member, start);
  return member;
}

// ----------------------------------------------------------------- containers

void ScriptParser::attach(ExpressionPointer& node, ExpressionPointer container, Joint joint) {
  if (const ContainerSlot slot = slotOf(*node); slot.container && *slot.container) {
    attach(*slot.container, std::move(container), joint);
    setRange(**slot.container, (*slot.container)->range.offset);
  } else if (slot.container) {
    *slot.container = std::move(container);
    if (slot.joint)
      *slot.joint = joint;
    if (node->kind == Expression::Kind::handlerCall)
      static_cast<HandlerCall&>(*node).target = HandlerCall::Target::object;
  } else if (auto label = labelOf(*node)) {
    auto access = std::make_unique<PropertyAccess>();
    access->range = node->range;
    access->property = std::move(*label);
    access->container = std::move(container);
    access->joint = joint;
    node = std::move(access);
  }
  updateHeight(*node);
}

// ---------------------------------------------------------------------- whose

// `name of every tab of front window whose …`: the test belongs to the outermost reference that picks from several, so
// it is the tabs that are tested.
void ScriptParser::parseTest(ExpressionPointer& node) {
  const std::size_t start = node->range.offset;
  std::vector<Expression*> around;
  Expression* picked = node.get();
  while (picked && !picksFromSeveral(*picked)) {
    around.push_back(picked);
    const bool isReference = picked->kind == Expression::Kind::property || picked->kind == Expression::Kind::element;
    picked = isReference ? slotOf(*picked).container->get() : nullptr;
  }
  if (!picked)
    return;
  auto& element = static_cast<ElementAccess&>(*picked);
  advance();
  insideTell(nullptr, [&] { element.test = parseExpression(); });
  updateHeight(element);
  for (Expression* outer : std::views::reverse(around))
    updateHeight(*outer);
  if (isOf() && canAttach(*node)) { // `first tab whose (…) of w`
    const Nesting nesting(*this);
    const Joint joint = token().is(Keyword::of) ? Joint::of : Joint::in;
    advance();
    attach(node, parseContained(), joint);
  }
  setRange(*node, start);
}

} // namespace tabwright::applescript
