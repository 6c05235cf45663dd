#pragma once

#include "platform/Failure.h"

#include <string>
#include <utility>

namespace tabwright::intents {

/// The signal that an action can't start without a value of one parameter.
///
/// Thrown by the action, before anything has been run: also for a value that was given and can't be, which its cause
/// then tells. Whoever hosts the action may ask the user `question()` and perform the action again with the answer in
/// its place; one that can't ask reports the failure as it stands.
///
///     catch (const NeedsValue& missing) { parameters[missing.parameter()] = ask(missing.question()); }
class NeedsValue final : public platform::Failure {
public:
  NeedsValue(std::string parameter, std::string question)
      : parameter_(std::move(parameter)), question_(std::move(question)) {}

  /// Name of the parameter, as in its declaration.
  [[nodiscard]] const std::string& parameter() const { return parameter_; }
  /// The question to ask, in the user's language.
  [[nodiscard]] const std::string& question() const { return question_; }

  /// Both in one sentence: "cssSelector needs a value. QUESTION".
  [[nodiscard]] std::string errorDescription() const override { return parameter_ + " needs a value. " + question_; }
  /// The case is the parameter's name, so that a program knows what to give.
  [[nodiscard]] platform::FailureIdentity identity() const override {
    return {"NeedsValue", parameter_, {}, platform::FailureClass::wrongUse};
  }

private:
  std::string parameter_;
  std::string question_;
};

} // namespace tabwright::intents
