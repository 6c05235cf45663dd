#pragma once

#include "applescript/evaluate/Evaluator.h"

#include <cstddef>
#include <optional>
#include <utility>

/// Access to properties and elements, of values and in applications.
namespace tabwright::applescript {

Value evaluateProperty(Evaluator& run, const PropertyAccess& expression, Mode mode);
Value propertyOf(Evaluator& run, const Value& container, const Label& property, Mode mode);

Value evaluateElement(Evaluator& run, const ElementAccess& expression, Mode mode);
Value elementOf(Evaluator& run, const Value& container, const ElementAccess& expression);
ElementKey keyOf(Evaluator& run, const ElementAccess& expression);
/// The list and the index where an access names one item of a list by its position.
std::optional<std::pair<Value::ListPointer, std::size_t>> itemPlace(Evaluator& run, const Value& container,
                                                                    const ElementAccess& expression);
Value countElements(Evaluator& run, const ElementAccess& expression);
Value countOf(Evaluator& run, const Value& value);

Value referenceTo(Evaluator& run, const ReferenceTo& expression);

// In applications
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
