#pragma once

#include "intents/OptionsProvider.h"
#include "targets/TargetContextManager.h"

#include <optional>
#include <vector>

namespace tabwright::targets {

/// The choices of the parameter that says which browser an action aims at: a section per `AppSection`, and the
/// frontmost browser as the default.
class BrowserTargetContextsProvider final : public intents::OptionsProvider {
public:
  /// `manager` outlives the provider.
  explicit BrowserTargetContextsProvider(const TargetContextManager& manager) : manager_(manager) {}

  [[nodiscard]] std::vector<intents::OptionSection> results() const override;
  [[nodiscard]] std::optional<intents::Option> defaultResult() const override;

private:
  const TargetContextManager& manager_;
};

/// The choices for actions on whichever application: the same, and all others that run.
class ApplicationTargetsProvider final : public intents::OptionsProvider {
public:
  /// `manager` outlives the provider.
  explicit ApplicationTargetsProvider(const TargetContextManager& manager) : browsers_(manager), manager_(manager) {}

  [[nodiscard]] std::vector<intents::OptionSection> results() const override;
  [[nodiscard]] std::optional<intents::Option> defaultResult() const override { return browsers_.defaultResult(); }

private:
  const BrowserTargetContextsProvider browsers_;
  const TargetContextManager& manager_;
};

/// The same choices wherever it is asked: the frontmost browser, and each supported one, installed or not.
class SupportedBrowsersProvider final : public intents::OptionsProvider {
public:
  [[nodiscard]] std::vector<intents::OptionSection> results() const override;
  [[nodiscard]] std::optional<intents::Option> defaultResult() const override;
};

} // namespace tabwright::targets
