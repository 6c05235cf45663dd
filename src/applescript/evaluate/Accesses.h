#pragma once

#include "applescript/evaluate/Evaluator.h"

#include <cstddef>
#include <optional>
#include <utility>

/// Access to properties and elements, of values and in applications.
namespace tabwright::applescript {

/// Without a container: of the target of the `tell` around, else of the script itself.
Value evaluateProperty(Evaluator& run, const PropertyAccess& expression, Mode mode);
/// Of any value; a list of objects answers with the list of their properties. −1728 for one that it doesn't have.
Value propertyOf(Evaluator& run, const Value& container, const Label& property, Mode mode);

Value evaluateElement(Evaluator& run, const ElementAccess& expression, Mode mode);
/// Of a container that has been evaluated; a `whose` is tested here, item by item.
Value elementOf(Evaluator& run, const Value& container, const ElementAccess& expression);
/// Evaluates the keys of an access: once, so that a key with effects has them once.
ElementKey keyOf(Evaluator& run, const ElementAccess& expression);
/// The list and the index where an access names one item of a list by its position.
std::optional<std::pair<Value::ListPointer, std::size_t>> itemPlace(Evaluator& run, const Value& container,
                                                                    const ElementAccess& expression);
/// `count of characters of t`, `count of windows whose …`: counted where they are, instead of made into a list first.
Value countElements(Evaluator& run, const ElementAccess& expression);
/// −1708 for a value that has no parts to count.
Value countOf(Evaluator& run, const Value& value);

/// `a reference to x`. References may outlive the run, so they hold on to what they read from.
Value referenceTo(Evaluator& run, const ReferenceTo& expression);

// In applications: an access only makes the specifier longer, until `mode` asks for the value. Those that the language
// can do with a value of its own (`length of name of w`) are done here, after a `get`.

/// The application that the text names; −1728 when there is none.
Value evaluateApplication(Evaluator& run, const ApplicationReference& expression);
Value specifierProperty(Evaluator& run, const Value::SpecifierPointer& container, const Label& property, Mode mode);
Value specifierElement(Evaluator& run, const Value::SpecifierPointer& container, const ElementAccess& expression,
                       Mode mode);
Value insertionPoint(Evaluator& run, const InsertionPoint& expression);
/// The condition of a `whose` for the application. Throws TestNeedsValues where it can't be asked that.
std::shared_ptr<const SpecifierTest> specifierTest(Evaluator& run, const Expression& test);
/// The condition of a `whose` holds for the item.
bool passes(Evaluator& run, const Value& item, const Expression& test);

} // namespace tabwright::applescript
