#pragma once

#include "applescript/evaluate/ElementStep.h"
#include "applescript/evaluate/Frame.h"
#include "applescript/evaluate/Script.h"
#include "applescript/evaluate/StackGuard.h"
#include "applescript/evaluate/Surroundings.h"
#include "applescript/events/AppleEventMessage.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Comparison.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/TextElements.h"

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabwright::applescript {

/// One run of a script: walks its tree.
///
/// The member functions are spread over several files, by kind of node: Evaluator.cpp (the walk itself, its limits),
/// Statements.cpp, Loops.cpp, Assignments.cpp, Handlers.cpp, Scripts.cpp, Operators.cpp, Properties.cpp, Elements.cpp,
/// TextContainers.cpp, References.cpp, Applications.cpp (specifiers and events), Tests.cpp (`whose`), Commands.cpp,
/// Additions.cpp, Bridge.cpp.
///
/// An evaluator serves one run and one thread. It throws ScriptError, with the place in the source set.
class Evaluator {
public:
  Evaluator(const Surroundings& surroundings, const RunLimits& limits, Script& script, std::stop_token stop,
            std::shared_ptr<platform::Notices> notices);

  Value run(std::vector<Value> arguments);
  Value call(std::string_view handler, std::vector<Value> arguments);

private:
  /// What becomes of an expression that names something in an application: its value, which the application is asked
  /// for, or the name itself, for whoever goes on from there.
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
  static bool isPlain(const Value& value);
  void step() {
    if (--untilCheckpoint_ == 0)
      checkpoint();
  }
  void checkpoint();
  [[nodiscard]] bool mustEnd() const;
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
  void setResult(Value&& value);
  Value result();

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
  void bindOptional(const std::unique_ptr<Variable>& variable, Value&& value);
  Value& variableSlot(const Variable& variable);
  Value readVariable(const Variable& variable);

  // Handlers.cpp
  struct Arguments {
    std::vector<Value> positional;
    Value direct = Value::nothing();
    std::vector<std::pair<std::string_view, Value>> labelled;
    bool isLabelled = false;
  };
  struct FoundHandler {
    const HandlerDefinition* definition = nullptr;
    std::shared_ptr<ScriptObject> owner;
  };
  Value callHandler(const HandlerCall& call);
  Value continueCall(const ContinueStatement& statement);
  Arguments argumentsOf(const HandlerCall& call);
  static FoundHandler findHandler(const std::shared_ptr<ScriptObject>& script, const std::string& folded);
  FoundHandler findHandlerAround(const std::string& folded);
  Value invoke(const FoundHandler& handler, std::shared_ptr<ScriptObject> self, Arguments&& arguments,
               std::string_view name);
  void bindParameters(const HandlerDefinition& definition, Arguments&& arguments, std::string_view name);
  template <class Body>
  Value inFrame(Frame& frame, Body body);

  // Scripts.cpp
  std::shared_ptr<ScriptObject> instantiate(const ScriptLayout& layout, std::shared_ptr<ScriptObject> enclosing);
  void initialize(const std::shared_ptr<ScriptObject>& script);
  Value runScript(const std::shared_ptr<ScriptObject>& script, std::vector<Value> arguments);
  static Value* findProperty(ScriptObject& script, const Label& label);

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
  Value implicitTarget();
  Value evaluateProperty(const PropertyAccess& expression, Mode mode);
  Value propertyOf(const Value& container, const Label& property, Mode mode);
  std::optional<Value> propertyOfValue(const Value& value, const Label& property);
  std::optional<Value> textProperty(const Text& text, FourCharCode property);
  std::optional<Value> listProperty(const Value::ListPointer& list, const Label& property);

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
  std::vector<Value> candidates(const Value& container, const ElementAccess& expression);
  Value pick(const std::vector<Value>& elements, const ElementAccess& expression, const ElementKey& key,
             const Value& container);
  std::size_t position(std::size_t count, const ElementAccess& expression, const ElementKey& key,
                       const Value& container);
  std::pair<std::size_t, std::size_t> positions(std::size_t count, const ElementAccess& expression,
                                                const ElementKey& key, const Value& container);
  Value countElements(const ElementAccess& expression);
  std::size_t randomIndex(std::size_t count);

  // TextContainers.cpp
  Value textElement(const Text& text, const ElementAccess& expression);
  Value textBetweenElements(const Text& text, const ElementAccess& expression);
  const std::vector<TextRange>& textRanges(const Text& text, FourCharCode elementClass);
  std::vector<std::string> delimiters() const;

  // Applications.cpp
  static const Value& currentApplication();
  Value evaluateApplication(const ApplicationReference& expression);
  Value specifierProperty(const Value::SpecifierPointer& container, const Label& property, Mode mode);
  Value specifierElement(const Value::SpecifierPointer& container, const ElementAccess& expression, Mode mode);
  Value::SpecifierPointer elementSpecifier(Value::SpecifierPointer container, const ElementAccess& expression);
  Value filteredElement(const Value::SpecifierPointer& container, const ElementAccess& expression);
  Value insertionPoint(const InsertionPoint& expression);
  void setInApplication(const Value::SpecifierPointer& specifier, const Value& value);
  Value get(const Value::SpecifierPointer& specifier);
  Value send(const std::shared_ptr<ScriptableApplication>& application, AppleEventMessage message);
  Value outgoing(const Value& value);

  // Tests.cpp
  bool passes(const Value& item, const Expression& test);
  std::shared_ptr<const SpecifierTest> specifierTest(const Expression& test);
  std::shared_ptr<const SpecifierTest> buildTest(const Expression& test);
  std::shared_ptr<const SpecifierTest> buildComparison(const Binary& test);
  Value testOperand(const Expression& expression);

  // Commands.cpp
  Value evaluateCommand(const Command& command);
  Value sendCommand(const Command& command);
  std::optional<Value> ownCommand(const Command& command, const std::optional<Value>& direct);
  Value commandParameter(const ParameterTerm& parameter, const Expression& expression);
  Value count(const Command& command);
  Value countOf(const Value& value);
  Value exists(const Command& command);
  Value runCommand(const Command& command);
  void delay(const Command& command);
  Value offset(const Command& command);
  Value randomNumber(const Command& command);
  Value roundNumber(const Command& command);
  std::optional<Value> parameterOf(const Command& command, FourCharCode code);
  Value asciiCharacter(const Command& command);
  Value asciiNumber(const Command& command);
  double randomFraction();

  // Bridge.cpp (and Bridge.h)
  Value bridgeName(std::string_view name);
  Value sendForeign(ForeignObject& receiver, std::string_view selector, std::vector<Value> arguments);
  Value evaluateMessage(const ObjectiveCMessage& message);
  static std::string selectorOf(const HandlerCall& call);

  const Surroundings& surroundings_;
  const RunLimits& limits_;
  Script& script_;
  std::stop_token stop_;
  std::shared_ptr<platform::Notices> notices_;
  StackGuard stack_;

  Frame* frame_ = nullptr;
  std::size_t depth_ = 0;
  std::size_t untilCheckpoint_ = 1;
  std::size_t stepsTaken_ = 0;
  /// Where in the source the run is: the innermost expression or statement. Errors get their place from it.
  const SourceRange* place_ = nullptr;

  TextAttributes attributes_;
  std::chrono::nanoseconds eventTimeout_;
  std::unordered_map<const ApplicationReference*, Value::SpecifierPointer> applications_; ///< named literally
  CharacterIndex characters_;
  PieceIndex pieces_;
};

} // namespace tabwright::applescript
