#include "applescript/syntax/ParseReferences.h"

#include "applescript/syntax/ParseCommands.h"
#include "applescript/syntax/ParseExpressions.h"

#include <algorithm>
#include <ranges>
#include <utility>

// Chains of `of` and `'s`. `a of b of c` is read from the right (`a` of what `b of c` is), `c's b's a` from the left;
// both become the same tree, the outermost access at the top and its container below. The member is parsed first,
// without knowing of a container, and its container then hung in below its innermost end (`attach`); a name, class or
// constant becomes a property when that happens.
namespace tabwright::applescript {

namespace {

/// An access that picks from all elements of a class, so that a `whose` may narrow them, and has no test yet.
bool picksFromSeveral(const Expression& node) {
  using Form = ElementAccess::Form;
  const auto* element = as<ElementAccess>(node);
  if (!element || element->test)
    return false;
  return element->form == Form::every || element->form == Form::some || element->form == Form::middle ||
         element->isOrdinal;
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
    // `my f(x)` has its receiver already.
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
  if (const auto* variable = as<Variable>(node))
    return Label{0, variable->name};
  const auto* literal = as<Literal>(node);
  if (!literal)
    return std::nullopt;
  if (const auto* name = literal->value.get<Value::ClassPointer>())
    return Label{(*name)->code, (*name)->words};
  if (const auto* constant = literal->value.get<Value::EnumeratorPointer>())
    return Label{0, (*constant)->words};
  return literal->words.empty() ? std::nullopt : std::optional(Label{0, literal->words});
}

/// The innermost end of a reference takes a container.
bool canAttach(Expression& node) {
  const ContainerSlot slot = slotOf(node);
  return slot.container ? !*slot.container || canAttach(**slot.container) : labelOf(node).has_value();
}

/// A container follows; `in` may be a parameter of a command around instead.
bool isOf(const ScriptParser& p) {
  return (p.at(Keyword::of) || p.at(Keyword::in)) && !isStopped(p);
}

/// Hangs a container in at the innermost end of a reference that canAttach. Ranges and heights of all nodes above it
/// follow.
void attach(ScriptParser& p, ExpressionPointer& node, ExpressionPointer container, Joint joint) {
  if (const ContainerSlot slot = slotOf(*node); slot.container && *slot.container) {
    attach(p, *slot.container, std::move(container), joint);
    p.setRange(**slot.container, (*slot.container)->range.offset);
  } else if (slot.container) {
    *slot.container = std::move(container);
    if (slot.joint)
      *slot.joint = joint;
    if (auto* call = as<HandlerCall>(*node))
      call->target = HandlerCall::Target::object;
  } else if (auto label = labelOf(*node)) {
    auto access = std::make_unique<PropertyAccess>();
    access->range = node->range;
    access->property = std::move(*label);
    access->container = std::move(container);
    access->joint = joint;
    node = std::move(access);
  }
  p.updateHeight(*node);
}

ExpressionPointer parseContained(ScriptParser& p);

/// Lists are taken apart up to this length, and not within the container of another, since their container is read anew
/// for each item.
constexpr std::size_t longestList = 32;

bool isListOfParts(const ScriptParser& p, const Expression& node) {
  const auto* list = as<ListLiteral>(node);
  return list && !p.isTakingListApart && !list->items.empty() && list->items.size() <= longestList &&
         std::ranges::all_of(list->items, [](const ExpressionPointer& item) { return canAttach(*item); });
}

/// `{name, URL} of tab 1` is `{name of tab 1, URL of tab 1}`. The cursor goes back to the `of` for each item, so that
/// each gets a container of its own: nodes are not shared.
void attachToItems(ScriptParser& p, ListLiteral& list) {
  const std::size_t joint = p.position();
  p.isTakingListApart = true;
  for (ExpressionPointer& item : list.items) {
    p.moveTo(joint);
    const Joint of = p.at(Keyword::of) ? Joint::of : Joint::in;
    p.advance();
    attach(p, item, parseContained(p), of);
    p.setRange(*item, item->range.offset);
  }
  p.isTakingListApart = false;
}

/// A reference with its containers, without a `whose`. The container is such a reference itself: `of` groups to the
/// right.
ExpressionPointer parseContained(ScriptParser& p) {
  const std::size_t start = p.offset();
  ExpressionPointer node = parsePossessives(p, parsePrimary(p));
  if (isOf(p) && isListOfParts(p, *node)) {
    const ScriptParser::Nesting nesting(p);
    attachToItems(p, static_cast<ListLiteral&>(*node));
    p.setRange(*node, start);
  } else if (isOf(p) && canAttach(*node)) {
    const ScriptParser::Nesting nesting(p);
    const Joint joint = p.at(Keyword::of) ? Joint::of : Joint::in;
    p.advance();
    attach(p, node, parseContained(p), joint);
    p.setRange(*node, start);
  }
  return node;
}

/// `setValue:v forKey:k`, whose receiver is attached by the caller.
ExpressionPointer parseMessage(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto message = std::make_unique<ObjectiveCMessage>();
  while (p.isLabel()) {
    message->parts.emplace_back(p.token().text);
    p.advance(2);
    message->arguments.push_back(parseExpression(p));
  }
  return p.finish(std::move(message), start);
}

// Behind `'s` stands a name of any kind, never a variable of the script.
ExpressionPointer parseMember(ScriptParser& p) {
  const Token& first = p.token();
  const std::size_t start = p.offset();
  if (p.isLabel())
    return parseMessage(p);
  if (first.is(Keyword::end) || first.is(Keyword::beginning))
    return parseKey(p);
  const bool isName = first.kind == Token::Kind::word || first.kind == Token::Kind::quotedName;
  if (isName && p.token(1).is(Symbol::openParenthesis) && !p.token(1).spaceBefore) { // even `string()` and `count()`
    p.advance();
    return parseCall(p, std::string(first.text), start);
  }
  if (first.kind != Token::Kind::word || isReserved(first.keyword) || startsLabelledCall(p))
    return parsePrimary(p);

  const auto matches = p.scope.match(p.rest());
  if (matches.find(Term::Kind::className))
    return parseTerm(p, matches);
  if (const auto* property = matches.find(Term::Kind::property))
    return parseProperty(p, {property->term->code, std::string(property->term->words)}, property->words);
  return parseProperty(p, {0, std::string(first.text)}, 1);
}

// `name of every tab of front window whose …`: the test belongs to the outermost reference that picks from several, so
// it is the tabs that are tested.
void parseTest(ScriptParser& p, ExpressionPointer& node) {
  const std::size_t start = node->range.offset;
  std::vector<Expression*> around;
  Expression* picked = node.get();
  while (picked && !picksFromSeveral(*picked)) {
    around.push_back(picked);
    picked = as<PropertyAccess>(*picked) || as<ElementAccess>(*picked) ? slotOf(*picked).container->get() : nullptr;
  }
  if (!picked)
    return;
  auto& element = static_cast<ElementAccess&>(*picked);
  p.advance();
  {
    // As in a `tell`: a dictionary's words are those of the element under test, whatever the script has bound.
    const ScriptParser::Inside inside(p, nullptr);
    element.test = parseExpression(p);
  }
  // From the inside outwards, since each takes its height from those below.
  p.updateHeight(element);
  for (Expression* outer : std::views::reverse(around))
    p.updateHeight(*outer);
  if (isOf(p) && canAttach(*node)) { // `first tab whose (…) of w`
    const ScriptParser::Nesting nesting(p);
    const Joint joint = p.at(Keyword::of) ? Joint::of : Joint::in;
    p.advance();
    attach(p, node, parseContained(p), joint);
  }
  p.setRange(*node, start);
}

} // namespace

ExpressionPointer parseChain(ScriptParser& p) {
  ExpressionPointer node = parseContained(p);
  if (p.at(Keyword::whose) || p.at(Keyword::where))
    parseTest(p, node);
  return node;
}

ExpressionPointer parsePossessives(ScriptParser& p, ExpressionPointer head) {
  const std::size_t start = head->range.offset;
  while (p.token().kind == Token::Kind::possessive) {
    p.advance();
    ExpressionPointer member = parseMember(p);
    if (!canAttach(*member))
      throw expectedError("variable name or property", "expression", p.token());
    attach(p, member, std::move(head), Joint::possessive);
    p.setRange(*member, start);
    head = std::move(member);
  }
  return head;
}

// `my x`, `its x`. A call behind `my` is the script's own, and no message to an object.
ExpressionPointer parseMemberOf(ScriptParser& p, Expression::Kind owner) {
  const ScriptParser::Nesting nesting(p);
  const std::size_t start = p.offset();
  p.advance();
  const Token& name = p.token();
  const bool isMy = owner == Expression::Kind::me;
  ExpressionPointer container;
  if (isMy)
    container = std::make_unique<Me>();
  else
    container = std::make_unique<It>();
  container->range = p.previous().range;
  if (isMy && name.isName() && p.token(1).is(Symbol::openParenthesis)) {
    p.advance();
    ExpressionPointer call = parseCall(p, std::string(name.text), start);
    static_cast<HandlerCall&>(*call).target = HandlerCall::Target::me;
    return call;
  }
  ExpressionPointer member = parseMember(p);
  if (auto* call = as<HandlerCall>(*member); call && isMy && call->target == HandlerCall::Target::implicit) {
    call->target = HandlerCall::Target::me;
  } else {
    if (!canAttach(*member))
      throw expectedError("variable name or property", describe(name), name);
    attach(p, member, std::move(container), Joint::possessive);
  }
  p.setRange(*member, start);
  return member;
}

} // namespace tabwright::applescript
