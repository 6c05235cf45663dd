#pragma once

#include "applescript/evaluate/RunBudget.h"
#include "applescript/evaluate/Surroundings.h"
#include "applescript/syntax/Tree.h"
#include "applescript/values/TextElements.h"

#include <functional>
#include <optional>

namespace tabwright::applescript {

/// The commands that come with every system rather than with an application: those that scripts may use here, and the
/// errors of the others. Each is a row of the table in ScriptingAdditions.cpp.
class ScriptingAdditions {
public:
  /// Evaluates an expression to a value as operators take it.
  using Operand = std::function<Value(const Expression&)>;

  /// All must outlive it. `characters` counts in the texts that `offset` searches, with the `attributes` then in force.
  ScriptingAdditions(const Surroundings& surroundings, const RunLimits& limits, const RunBudget& budget,
                     CharacterIndex& characters, const TextAttributes& attributes, Operand operand)
      : surroundings_(surroundings), limits_(limits), budget_(budget), characters_(characters), attributes_(attributes),
        operand_(std::move(operand)) {}

  /// The command's answer, which may be `nothing`; no value for a command that is none of these.
  [[nodiscard]] std::optional<Value> answer(const Command& command);

private:
  struct Row;
  static const Row* find(EventCode event);

  Value asciiCharacter(const Command& command);
  Value asciiNumber(const Command& command);
  Value beep(const Command& command);
  Value currentDate(const Command& command);
  Value delay(const Command& command);
  Value log(const Command& command);
  Value offset(const Command& command);
  Value randomNumber(const Command& command);
  Value refuse(const Command& command);
  Value round(const Command& command);

  [[nodiscard]] std::optional<Value> direct(const Command& command) const;
  [[nodiscard]] std::optional<Value> parameter(const Command& command, FourCharCode code) const;
  [[nodiscard]] double randomFraction() const;

  const Surroundings& surroundings_;
  const RunLimits& limits_;
  const RunBudget& budget_;
  CharacterIndex& characters_;
  const TextAttributes& attributes_;
  Operand operand_;
};

} // namespace tabwright::applescript
