#pragma once

#include "automation/AxeMenuItem.h"
#include "engine/TargetContext.h"
#include "intents/EntityDefinition.h"
#include "targets/TargetContextValue.h"

#include <optional>
#include <string>
#include <vector>

namespace tabwright::automation {

/// A menu item as an action's result, and as the parameter of a later action. It is what the item was called when it
/// was found: good as long as the application's menus have these titles, and across its launches. A later action looks
/// at `app` and `pathSegments` only.
struct MenuItemEntity {
  std::string path; ///< to read: "File > Export…"
  /// Titles from the bar down to the item, by which it is found again.
  std::vector<std::string> pathSegments;
  /// The application by its id; a later action needs it running.
  engine::TargetContext app;

  /// Nothing for an item of an application without an id or a name.
  [[nodiscard]] static std::optional<MenuItemEntity> of(const AxeMenuItem& item);

  /// "APP: PATH".
  [[nodiscard]] std::string displayRepresentation() const;

  /// Its properties by name, for JSON, parameters and tables.
  [[nodiscard]] static const intents::EntityDefinition<MenuItemEntity>& definition();

  friend bool operator==(const MenuItemEntity&, const MenuItemEntity&) = default;
};

} // namespace tabwright::automation
