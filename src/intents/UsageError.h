#pragma once

#include "platform/Failure.h"

#include <string>
#include <utility>

namespace tabwright::intents {

/// The caller asked for something that can't be: an action or parameter that doesn't exist, a value outside its
/// choices. Nothing has been run. The sentence names the thing, the reason and what may stand there instead, and goes
/// to users and agents as it is.
class UsageError final : public platform::Failure {
public:
  explicit UsageError(std::string sentence) : sentence_(std::move(sentence)) {}

  [[nodiscard]] std::string errorDescription() const override { return sentence_; }
  [[nodiscard]] platform::FailureIdentity identity() const override {
    return {"UsageError", "wrongUse", {}, platform::FailureClass::wrongUse};
  }

private:
  std::string sentence_;
};

} // namespace tabwright::intents
