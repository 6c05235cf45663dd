#pragma once

#include "intents/LocalizedText.h"
#include "platform/Failure.h"
#include "platform/Task.h"

#include <string>

namespace tabwright::intents {

/// The user said no, or there was nobody to ask. The action has done nothing yet. Its cause may say what would have
/// gone without asking.
class ConfirmationRefused final : public platform::Failure {
public:
  [[nodiscard]] std::string errorDescription() const override { return "The action was not confirmed"; }
  [[nodiscard]] platform::FailureIdentity identity() const override { return {"ConfirmationRefused", "refused", {}}; }
};

/// Whoever hosts an action, as far as the action may speak to it while it runs: a terminal, a client of the background
/// host, an agent's user, a workflow. Outlives the run. Called on the run's executor.
class ActionHost {
public:
  virtual ~ActionHost() = default;

  /// Asks the user to allow what the action is about to do, and returns when the answer is yes.
  /// Throws `ConfirmationRefused` otherwise. A host without a user to ask must refuse; it may not wait for ever.
  virtual platform::Task<void> requestConfirmation(LocalizedText question) = 0;

  /// Takes what the user should know about an action that succeeds all the same, such as that the page in the tab could
  /// not be loaded. Shown beside the result; may come several times.
  virtual void notice(const platform::Notice& notice) = 0;
};

} // namespace tabwright::intents
