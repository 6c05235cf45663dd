#pragma once

#include "actions/ActionList.h"
#include "actions/ActionServices.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::host {

/// All actions by name: where every front end starts.
///
///     const Catalogue catalogue(services);
///     auto action = catalogue.make("ClickElement");
///
/// Immutable; safe to use from any thread.
class Catalogue {
public:
  /// `services` outlives the catalogue and every action made by it.
  explicit Catalogue(const actions::ActionServices& services) : services_(services) {}

  /// The short names, in the order in which actions are offered.
  [[nodiscard]] std::vector<std::string> names() const;

  /// An action for one run, its parameters at their defaults. Case doesn't count, and the full type name is taken too.
  /// Throws `intents::UsageError`, with the names nearest to it, when there is none.
  [[nodiscard]] std::unique_ptr<actions::ActionFrame> make(std::string_view name) const;

private:
  const actions::ActionServices& services_;
};

} // namespace tabwright::host
