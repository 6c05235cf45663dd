#pragma once

#include "actions/ActionList.h"
#include "actions/ActionServices.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::host {

/// All actions by name: where every front end starts. Whoever lists, describes or reads words for an action looks at
/// its declaration; a run makes an action of its own.
///
///     const Catalogue catalogue(services);
///     catalogue.declaration("ClickElement").title();
///     auto action = catalogue.make("ClickElement");
///
/// Immutable; safe to use from any thread. Texts and offered choices are looked up when they are asked for.
class Catalogue {
public:
  using Declaration = std::unique_ptr<const intents::Intent>;

  /// `services` outlives the catalogue and every action made by it.
  explicit Catalogue(const actions::ActionServices& services);

  /// Each action as it is declared, its parameters at their defaults, in the order in which actions are offered.
  [[nodiscard]] std::span<const Declaration> declarations() const { return declarations_; }
  /// The short names, in the same order.
  [[nodiscard]] std::vector<std::string> names() const;

  // Both find an action by its short or its full type name, in any case. They throw `intents::UsageError`, with the
  // names nearest to it, when there is none.

  /// The action as it is declared; lives as long as the catalogue.
  [[nodiscard]] const intents::Intent& declaration(std::string_view name) const;
  /// An action for one run, its parameters at their defaults: the caller's own, to be filled by `readParameters` and
  /// performed once.
  [[nodiscard]] std::unique_ptr<actions::ActionFrame> make(std::string_view name) const;

private:
  [[nodiscard]] std::size_t placeOf(std::string_view name) const;

  const actions::ActionServices& services_;
  std::vector<Declaration> declarations_;
};

} // namespace tabwright::host
