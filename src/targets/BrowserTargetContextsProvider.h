#pragma once

#include "intents/OptionsProvider.h"
#include "targets/TargetContextManager.h"

#include <optional>
#include <vector>

namespace tabwright::targets {

/// The choices of the parameter that says which browser an action aims at: a section per `AppSection`, and the
/// frontmost browser as the default. Titles are names, and the text of each choice is the shortest that is read as it,
/// such as "chromium".
class BrowserTargetContextsProvider final : public intents::OptionsProvider {
public:
  /// `manager` outlives the provider. Looks for nothing yet.
  explicit BrowserTargetContextsProvider(const TargetContextManager& manager) : manager_(manager) {}

  [[nodiscard]] std::vector<intents::OptionSection> results() const override;
  [[nodiscard]] std::optional<intents::Option> defaultResult() const override;

private:
  const TargetContextManager& manager_;
};

/// The choices for actions on whichever application: the same, and all others that run. Those others stand in a section
/// of their own, the last. An application that comes several times is offered once.
class ApplicationTargetsProvider final : public intents::OptionsProvider {
public:
  /// `manager` outlives the provider. Looks for nothing yet.
  explicit ApplicationTargetsProvider(const TargetContextManager& manager) : browsers_(manager), manager_(manager) {}

  [[nodiscard]] std::vector<intents::OptionSection> results() const override;
  /// The frontmost application, by the same entry: what it stands for is the action's matter.
  [[nodiscard]] std::optional<intents::Option> defaultResult() const override { return browsers_.defaultResult(); }

private:
  const BrowserTargetContextsProvider browsers_;
  const TargetContextManager& manager_;
};

/// The same choices wherever it is asked: the frontmost browser, and each supported one, installed or not. One section
/// without a title. For descriptions that must not depend on the machine, so nothing is looked for.
class SupportedBrowsersProvider final : public intents::OptionsProvider {
public:
  [[nodiscard]] std::vector<intents::OptionSection> results() const override;
  [[nodiscard]] std::optional<intents::Option> defaultResult() const override;
};

} // namespace tabwright::targets
