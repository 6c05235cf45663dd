#pragma once

#include "applescript/terminology/FourCharCode.h"
#include "applescript/values/Value.h"

#include <memory>
#include <vector>

namespace tabwright::applescript {

class ScriptableApplication;
struct ObjectSpecifier;
using SpecifierPointer = std::shared_ptr<const ObjectSpecifier>;

/// Comparisons of a `whose` test, in the order of their words in SourceForm.h. The negated forms are written with a
/// logical `not` around; `isContainedBy` is `contains` with its sides exchanged.
enum class TestOperator {
  equals,
  greaterThan,
  atLeast,
  lessThan,
  atMost,
  beginsWith,
  endsWith,
  contains,
  isContainedBy
};

/// The condition of a `whose`: a tree over the properties of the object under test. Immutable once it is part of a
/// specifier.
struct SpecifierTest {
  /// `both` is `and`, `either` is `or`.
  enum class Kind { comparison, both, either, negation };
  Kind kind = Kind::comparison;

  // Kind::comparison: an operand is a specifier rooted in the object under test, or a plain value.
  TestOperator comparison = TestOperator::equals;
  Value left;
  Value right;

  // The others: one operand for `negation`, two or more for `both` and `either`.
  std::vector<std::shared_ptr<const SpecifierTest>> operands;

  /// Texts differ even when only their case does (`considering case`).
  bool considersCase = false;
};

/// The name of something inside an application: a chain of steps from the outermost object inwards.
///
/// Immutable and shared. `tab 3 of window id "8" of application "X"` is three nodes: `tab` by index 3 in `window` by id
/// in the root. A specifier says nothing about whether the thing exists: the application finds that out when an event
/// carries the specifier, and answers for one object with that object's specifier by id.
struct ObjectSpecifier {
  /// In the order of the words in SourceForm.cpp.
  enum class Form {
    application, ///< the root: the application itself. No container
    tested,      ///< the root inside a `whose`: the object under test. No container, no application
    property,    ///< the property `desiredClass` (its code) of the container
    index,       ///< `key`: integer, 1-based, negative from the end. Also `first`, `last`
    middle,      ///< the middle one
    some,        ///< any one
    every,       ///< all of them
    name,        ///< `key`: text
    id,          ///< `key`: text or integer
    range,       ///< `key` thru `rangeEnd`: integers, or specifiers
    before,      ///< the one before the container (`tab before tab 3`)
    after,       ///< the one after the container
    beginning,   ///< insertion point at the beginning of the container's elements (`at beginning of tabs of w`)
    end,         ///< insertion point at the end
  };

  Form form = Form::application;
  FourCharCode desiredClass = 0; ///< class of the element, or code of the property
  SpecifierPointer container;    ///< null for the roots
  /// `missing value` for forms without one, as is `rangeEnd`.
  Value key;
  Value rangeEnd;
  /// Condition on the elements that `form` picks from; null for none. `windows whose p` is Form::every with a test.
  std::shared_ptr<const SpecifierTest> test;
  /// The application addressed; the same in all nodes of a chain. Null below `tested`, and in `current application`,
  /// which is a Form::application that never leaves the script.
  std::shared_ptr<ScriptableApplication> application;

  ObjectSpecifier() = default;
  ObjectSpecifier(const ObjectSpecifier&) = default;
  ObjectSpecifier& operator=(const ObjectSpecifier&) = default;
  /// A script can make a chain as long as it likes; taking it down doesn't recurse.
  ~ObjectSpecifier();
};

/// The application itself, from which a chain hangs.
///
///     // tab 3 of window id "8" of application "X"
///     elementByIndex(elementByID(applicationRoot(x), fourCharCode("cwin"), "8"), fourCharCode("CrTb"), 3)
[[nodiscard]] SpecifierPointer applicationRoot(std::shared_ptr<ScriptableApplication> application);
/// A step further inwards, in the application of the container, which must not be null. `index` is 1-based, negative
/// from the end; an id is a text or an integer.
[[nodiscard]] SpecifierPointer propertyOf(SpecifierPointer container, FourCharCode property);
[[nodiscard]] SpecifierPointer elementByIndex(SpecifierPointer container, FourCharCode elementClass,
                                              std::int64_t index);
[[nodiscard]] SpecifierPointer elementByID(SpecifierPointer container, FourCharCode elementClass, Value id);
[[nodiscard]] SpecifierPointer elementByName(SpecifierPointer container, FourCharCode elementClass, std::string name);
[[nodiscard]] SpecifierPointer everyElement(SpecifierPointer container, FourCharCode elementClass);

/// The node without container that a chain hangs from; lives as long as the chain.
[[nodiscard]] const ObjectSpecifier& rootOf(const ObjectSpecifier& specifier);
/// The two name the same thing in the same words: equal steps of the same application, with texts in keys compared
/// exactly. Conditions are the same only as one object: `windows whose p` written twice makes two names. Asks no
/// application.
[[nodiscard]] bool sameSpecifier(const ObjectSpecifier& left, const ObjectSpecifier& right);

} // namespace tabwright::applescript
