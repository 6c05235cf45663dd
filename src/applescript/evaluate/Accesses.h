#pragma once

#include "applescript/evaluate/Evaluator.h"

#include <cstddef>
#include <optional>
#include <utility>

/// Access to properties and elements, of values and in applications.
namespace tabwright::applescript {

/// Without a container: of the target of the `tell` around, else of the script itself.
Value evaluateProperty(Evaluator& run, const PropertyAccess& expression, Mode mode);
/// Of any value; references and foreign objects are looked through, a list of objects answers with the list of their
/// properties. −1728 for one that it doesn't have.
Value propertyOf(Evaluator& run, const Value& container, const Label& property, Mode mode);

/// Without a container: of the target of the `tell` around. `date "…"` and `character id n` without one are values of
/// their own, whatever the target is.
Value evaluateElement(Evaluator& run, const ElementAccess& expression, Mode mode);
/// Of a container that has been evaluated; a `whose` is tested here, item by item. −1728 for what isn't there.
Value elementOf(Evaluator& run, const Value& container, const ElementAccess& expression);
/// Evaluates the keys of an access: once, so that a key with effects has them once. `missing value` stands for keys
/// that its form doesn't have.
ElementKey keyOf(Evaluator& run, const ElementAccess& expression);
/// The list and the 0-based index where an access names one item of a list by its position. Nothing for any other
/// access; none of its keys has been evaluated then. −1728 for a position that the list doesn't have.
std::optional<std::pair<Value::ListPointer, std::size_t>> itemPlace(Evaluator& run, const Value& container,
                                                                    const ElementAccess& expression);
/// `count of characters of t`, `count of windows whose …`: counted where they are, by the application or the text,
/// instead of made into a list first.
Value countElements(Evaluator& run, const ElementAccess& expression);
/// −1708 for a value that has no parts to count.
Value countOf(Evaluator& run, const Value& value);

/// `a reference to x`: a Reference for a place in the script, a specifier for one in an application, else the value
/// itself. References may outlive the run, so they hold on to what they read from.
Value referenceTo(Evaluator& run, const ReferenceTo& expression);

// In applications: an access only makes the specifier longer, until `mode` asks for the value. Those that the language
// can do with a value of its own (`length of name of w`) are done here, after a `get`.

/// The application that the text names, as the root of a specifier; −1728 when there is none. Doesn't start it.
Value evaluateApplication(Evaluator& run, const ApplicationReference& expression);
/// A property of an object. The name, identifier and state of an application itself are told without an event. −1728
/// for one that no dictionary names.
Value specifierProperty(Evaluator& run, const Value::SpecifierPointer& container, const Label& property, Mode mode);
/// Elements of an object. A `whose` travels with the event; where the application can't be asked it, all elements are
/// fetched and tested here, and the answer is their list or one of them whatever `mode` is.
Value specifierElement(Evaluator& run, const Value::SpecifierPointer& container, const ElementAccess& expression,
                       Mode mode);
/// `end of tabs of w`, `before tab 3`: a specifier, which no event resolves. Of a list `beginning` and `end` are its
/// first and last item; −1728 for one without items.
Value insertionPoint(Evaluator& run, const InsertionPoint& expression);
/// The condition of a `whose` for the application. Operands that don't depend on the object under test are evaluated,
/// once. Throws TestNeedsValues where the application can't be asked that.
std::shared_ptr<const SpecifierTest> specifierTest(Evaluator& run, const Expression& test);
/// The condition of a `whose` holds for the item: evaluated with the item as `it`.
bool passes(Evaluator& run, const Value& item, const Expression& test);

} // namespace tabwright::applescript
