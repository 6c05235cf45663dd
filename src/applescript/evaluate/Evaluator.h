#pragma once

#include "applescript/evaluate/ElementPicker.h"
#include "applescript/evaluate/EventSender.h"
#include "applescript/evaluate/Frame.h"
#include "applescript/evaluate/RunBudget.h"
#include "applescript/evaluate/Script.h"
#include "applescript/evaluate/ScriptMembers.h"
#include "applescript/evaluate/ScriptingAdditions.h"
#include "applescript/evaluate/StackGuard.h"
#include "applescript/evaluate/Surroundings.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Comparison.h"
#include "applescript/values/ObjectSpecifier.h"

#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// One run of a script: walks its tree.
///
/// The member functions are spread over several files, by kind of node: Evaluator.cpp (the walk itself),
/// Statements.cpp, Attempts.cpp, Loops.cpp, Assignments.cpp, Handlers.cpp, Scripts.cpp, Operators.cpp, Properties.cpp,
/// Elements.cpp, References.cpp, Applications.cpp (objects of applications, `whose`), Commands.cpp, Bridge.cpp. What
/// needs no tree is its parts': variables (Frame), limits (RunBudget), events (EventSender), elements of values
/// (ElementPicker), conditions that travel (TestBuilder), the commands of every system (ScriptingAdditions).
///
/// An evaluator serves one run and one thread. It throws ScriptError, with the place in the source set.
class Evaluator {
public:
  Evaluator(const Surroundings& surroundings, const RunLimits& limits, Script& script, std::stop_token stop,
            std::shared_ptr<platform::Notices> notices);

  Value run(std::vector<Value> arguments);
  Value call(std::string_view handler, std::vector<Value> arguments);

private:
  /// An expression that names something in an application comes to its value, which the application is asked for, or to
  /// the name itself, which a longer name or an event is made of.
  enum class Mode { value, designation };
  enum class Flow { next, exitRepeat, returned };

  // Evaluator.cpp
  /// Throws −2763 when the expression comes to nothing; `evaluateOptional` answers `nothing` then.
  Value evaluate(const Expression& expression, Mode mode = Mode::value);
  Value evaluateOptional(const Expression& expression, Mode mode = Mode::value);
  Value dispatch(const Expression& expression, Mode mode);
  /// The value for an operator: references and foreign objects looked through, properties of objects read.
  Value operand(const Expression& expression);
  Value plain(const Value& value);
  /// The container of an access, looked through: the one written, or the target of the `tell` around.
  Value containerOf(const ExpressionPointer& container);
  static bool isPlain(const Value& value);
  template <class Body>
  Value guarded(Body body);
  void load();
  [[nodiscard]] CoercionContext coercionContext() const;
  void checkSize(std::size_t bytes) const;

  // Statements.cpp
  Flow execute(const Block& block);
  Flow execute(const Statement& statement);
  Flow dispatch(const Statement& statement);
  Flow executeIf(const If& statement);
  Flow executeTell(const Tell& statement);
  Flow executeTry(const Try& statement);
  Flow executeTried(const Try& statement);
  std::optional<Value> attempt(const Expression& expression);
  Flow executeConsidering(const Considering& statement);
  Flow executeTimeout(const Timeout& statement);
  [[noreturn]] void raise(const RaiseError& statement);

  // Loops.cpp
  Flow executeRepeat(const Repeat& repeat);
  Flow repeatTimes(const Repeat& repeat);
  Flow repeatWhile(const Repeat& repeat);
  Flow repeatRange(const Repeat& repeat);
  Flow repeatItems(const Repeat& repeat);

  // Assignments.cpp
  void assign(const Assignment& statement);
  bool appendInPlace(const Variable& variable, const Expression& value);
  void assignTo(const Expression& target, Value&& value);
  void assignToVariable(const Variable& variable, Value&& value);
  void assignToProperty(const PropertyAccess& target, Value&& value);
  void assignToElement(const ElementAccess& target, Value&& value);
  void assignToEnd(const InsertionPoint& target, Value&& value);
  void assignPattern(const std::vector<ExpressionPointer>& targets, const Value& value);

  // Handlers.cpp
  struct Arguments {
    std::vector<Value> positional;
    Value direct = Value::nothing();
    std::vector<std::pair<std::string_view, Value>> labelled;
    bool isLabelled = false;
  };
  Value callHandler(const HandlerCall& call);
  Value continueCall(const ContinueStatement& statement);
  Arguments argumentsOf(const HandlerCall& call);
  Value invoke(const FoundHandler& handler, std::shared_ptr<ScriptObject> self, Arguments&& arguments,
               std::string_view name);
  void bindParameters(const HandlerDefinition& definition, Arguments&& arguments, std::string_view name);
  template <class Body>
  Value inFrame(Frame& frame, Body body);

  // Scripts.cpp
  std::shared_ptr<ScriptObject> instantiate(const ScriptLayout& layout, std::shared_ptr<ScriptObject> enclosing);
  void initialize(const std::shared_ptr<ScriptObject>& script);
  Value runScript(const std::shared_ptr<ScriptObject>& script, std::vector<Value> arguments);

  // Operators.cpp
  Value evaluateUnary(const Unary& expression);
  Value evaluateBinary(const Binary& expression);
  Value evaluateArithmetic(const Binary& expression);
  Value evaluateComparison(const Binary& expression);
  Value evaluateConcatenation(const Binary& expression);
  bool isEqual(const Expression& left, const Expression& right);
  bool isEqual(const Value& a, const Value& b);
  bool condition(const Expression& expression);
  Value concatenate(Value left, const Value& right);
  Value evaluateCoercion(const Coercion& expression);
  Value coerced(const Value& value, const Value& type);

  // Properties.cpp
  Value evaluateProperty(const PropertyAccess& expression, Mode mode);
  Value propertyOf(const Value& container, const Label& property, Mode mode);
  std::optional<Value> ownProperty(const Value& value, const Label& property);

  // References.cpp
  Value referenceTo(const ReferenceTo& expression);
  Value referenceToVariable(const Variable& variable);
  Value referenceToProperty(const PropertyAccess& property);
  Value referenceToElement(const ElementAccess& element);

  // Elements.cpp
  Value evaluateElement(const ElementAccess& expression, Mode mode);
  ElementKey keyOf(const ElementAccess& expression);
  Value elementOf(const Value& container, const ElementAccess& expression);
  std::optional<Value> specialElement(const ElementAccess& expression);
  Value countElements(const ElementAccess& expression);

  // Applications.cpp
  Value evaluateApplication(const ApplicationReference& expression);
  Value specifierProperty(const Value::SpecifierPointer& container, const Label& property, Mode mode);
  Value specifierElement(const Value::SpecifierPointer& container, const ElementAccess& expression, Mode mode);
  Value::SpecifierPointer elementSpecifier(Value::SpecifierPointer container, const ElementAccess& expression);
  Value filteredElement(const Value::SpecifierPointer& container, const ElementAccess& expression);
  Value insertionPoint(const InsertionPoint& expression);
  bool passes(const Value& item, const Expression& test);
  std::shared_ptr<const SpecifierTest> specifierTest(const Expression& test);

  // Commands.cpp
  Value evaluateCommand(const Command& command);
  Value sendCommand(const Command& command);
  std::optional<Value> ownCommand(const Command& command, const std::optional<Value>& direct);
  Value commandParameter(const ParameterTerm& parameter, const Expression& expression);
  Value count(const Command& command);
  Value countOf(const Value& value);
  Value exists(const Command& command);
  Value runCommand(const Command& command);

  // Bridge.cpp (and Bridge.h)
  Value evaluateMessage(const ObjectiveCMessage& message);

  const Surroundings& surroundings_;
  const RunLimits& limits_;
  Script& script_;
  StackGuard stack_;

  Frame* frame_ = nullptr;
  std::size_t depth_ = 0;
  /// Where in the source the run is: the innermost expression or statement. Errors get their place from it.
  const SourceRange* place_ = nullptr;

  TextAttributes attributes_;

  RunBudget budget_;
  EventSender sender_;
  ElementPicker picker_;
  ScriptingAdditions additions_;
};

} // namespace tabwright::applescript
