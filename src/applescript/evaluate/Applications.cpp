// Objects of applications. Access to an object's properties and elements only makes its name longer, until a value
// is needed: then one `get` carries the whole name. What the language can do on its own with a value (`length of name
// of w`, `item 2 of name of windows`) is done here, after a `get` of the value.
#include "applescript/evaluate/Accesses.h"
#include "applescript/evaluate/Bridge.h"
#include "applescript/evaluate/TestNeedsValues.h"
#include "applescript/terminology/Codes.h"
#include "applescript/values/ClassNames.h"
#include "applescript/values/Errors.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Reference.h"
#include "applescript/values/Restored.h"
#include "applescript/values/ScriptableApplication.h"
#include "applescript/values/SourceForm.h"

#include <fmt/core.h>

namespace tabwright::applescript {

namespace {

using Form = ObjectSpecifier::Form;

// Properties that values of the language have and objects don't: of a specifier they mean its value's.
bool isValueProperty(FourCharCode property, Form form) {
  switch (property) {
  case codes::length:
  case codes::reverse:
  case codes::rest:
    return form == Form::property || form == Form::every || form == Form::range;
  case codes::quotedForm:
  case codes::className:
  case codes::year:
  case codes::month:
  case codes::day:
  case codes::weekday:
  case codes::hours:
  case codes::minutes:
  case codes::seconds:
  case codes::time:
  case codes::dateString:
  case codes::shortDateString:
  case codes::timeString:
    return form == Form::property;
  default:
    return false;
  }
}

// Pieces of text, and items, that an object has as little: they are taken out of its value.
bool isValueElement(FourCharCode elementClass, Form form) {
  const bool isTextPiece = elementClass == codes::character || elementClass == codes::word ||
                           elementClass == codes::paragraph || elementClass == codes::textItem ||
                           isTextClass(elementClass);
  if (isTextPiece)
    return form == Form::property;
  return elementClass == codes::item && (form == Form::property || form == Form::every || form == Form::range);
}

std::shared_ptr<ObjectSpecifier> childOf(Value::SpecifierPointer container, FourCharCode desiredClass) {
  auto specifier = std::make_shared<ObjectSpecifier>();
  specifier->desiredClass = desiredClass;
  specifier->application = container->application;
  specifier->container = std::move(container);
  return specifier;
}

Value::SpecifierPointer elementSpecifier(Evaluator& run, Value::SpecifierPointer container,
                                         const ElementAccess& expression) {
  const ElementKey key = keyOf(run, expression);
  // Keys travel in events, so they leave references and the bridge behind.
  const auto specifier = stepOf(expression, {outgoing(key.first), outgoing(key.last)});
  // `tab index "3"`: the application gets a number.
  if (specifier->form == Form::index)
    specifier->key = integerOf(specifier->key);
  if (expression.test)
    specifier->test = specifierTest(run, *expression.test);
  // `item 2 of tabs of w` is the tab.
  if (specifier->desiredClass == codes::item && container->form == Form::every && container->container) {
    specifier->desiredClass = container->desiredClass;
    if (!expression.test)
      specifier->test = container->test;
    container = Value::SpecifierPointer(container->container);
  }
  specifier->application = container->application;
  specifier->container = std::move(container);
  return specifier;
}

// A condition that the application can't be asked: all elements are fetched, and each is put to the test here.
Value filteredElement(Evaluator& run, const Value::SpecifierPointer& container, const ElementAccess& expression) {
  // All of the class in one event; the conditions then cost one for each property that they read.
  const auto every = childOf(container, expression.elementClass.code);
  every->form = Form::every;
  const Value all = run.sender.get(every);
  std::vector<Value> passing;
  const Value::ListPointer elements = listOf(all);
  for (const Value& element : elements->items) {
    if (passes(run, element, *expression.test))
      passing.push_back(element);
  }
  return run.picker.pickFrom(passing, expression, keyOf(run, expression), Value(container));
}

} // namespace

Value evaluateApplication(Evaluator& run, const ApplicationReference& expression) {
  if (const Value::SpecifierPointer* known = run.sender.known(expression))
    return *known;
  return run.sender.find(expression, textOf(run.operand(*expression.designation), run.coercionContext()));
}

Value specifierProperty(Evaluator& run, const Value::SpecifierPointer& container, const Label& property, Mode mode) {
  const bool isRoot = container->form == Form::application;
  if (property.code == codes::contents)
    return mode == Mode::value ? run.sender.get(container) : Value(container);
  if (isRoot && property.code == codes::className)
    return ClassName{codes::application, "application"};
  if (isRoot && !container->application) {
    if (property.code == codes::name)
      return run.surroundings.ownName;
    return findInBridge(run.surroundings.objectiveC, property.name);
  }
  // There is no object to ask yet, so the name grows whatever the mode is.
  if (isRootedInTest(*container))
    return propertyOf(container, property.code);
  if (isRoot) {
    // Facts known without the application neither ask nor start it.
    if (property.code == codes::name)
      return container->application->name();
    if (property.code == codes::id)
      return container->application->bundleIdentifier();
    if (property.code == codes::running)
      return container->application->isRunning();
  }
  // A name of the script's own means nothing to an application, and is refused without an event.
  if (property.code == 0)
    throw errors::cannotGet(fmt::format("{} of {}", property.name, shortSourceForm(Value(container))))
        .raisedBy(container->application->name());
  if (isValueProperty(property.code, container->form))
    return propertyOf(run, run.sender.get(container), property, mode);
  const Value::SpecifierPointer specifier = propertyOf(container, property.code);
  return mode == Mode::value ? run.sender.get(specifier) : Value(specifier);
}

Value specifierElement(Evaluator& run, const Value::SpecifierPointer& container, const ElementAccess& expression,
                       Mode mode) {
  if (!container->application && !isRootedInTest(*container)) {
    throw errors::cannotGet(fmt::format("{} of current application", classWords(expression.elementClass)));
  }
  if (!isRootedInTest(*container) && isValueElement(expression.elementClass.code, container->form)) {
    // `first item of tabs of w` is the first tab, and still costs one event.
    const bool isItemOfEvery = expression.elementClass.code == codes::item && container->form == Form::every &&
                               !(container->test && expression.test) && container->container;
    if (!isItemOfEvery)
      return elementOf(run, run.sender.get(container), expression);
  }
  Value::SpecifierPointer specifier;
  try {
    specifier = elementSpecifier(run, container, expression);
  } catch (const TestNeedsValues&) {
    // A `whose` within a `whose`: the outer one goes to each object itself, and gets here again with an object.
    if (isRootedInTest(*container))
      throw;
    return filteredElement(run, container, expression);
  }
  return mode == Mode::value ? run.sender.get(specifier) : Value(specifier);
}

bool passes(Evaluator& run, const Value& item, const Expression& test) {
  const Restored<Value> target(run.frame->target, lookThrough(item));
  return run.condition(test);
}

Value insertionPoint(Evaluator& run, const InsertionPoint& expression) {
  const Value container = run.containerOf(expression.container);
  const auto* place = objectIn(container);
  const bool isEnd = expression.form == Form::end || expression.form == Form::beginning;
  if (!place) {
    // `end of xs`, where it is read instead of set, is the last item.
    const auto* list = container.get<Value::ListPointer>();
    if (!list || !isEnd || (*list)->items.empty())
      throw errors::cannotGet(fmt::format("{} of {}", expression.form == Form::beginning ? "beginning" : "end",
                                          shortSourceForm(container)));
    return expression.form == Form::end ? (*list)->items.back() : (*list)->items.front();
  }
  // `end of tabs of w` names the class that `w` alone leaves open.
  const bool isOfElements = isEnd && (*place)->form == Form::every;
  const auto specifier = childOf(*place, isOfElements ? (*place)->desiredClass : 0);
  specifier->form = expression.form;
  return Value::SpecifierPointer(specifier);
}

} // namespace tabwright::applescript
