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

} // namespace tabwright::targets
