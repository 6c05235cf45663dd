#include "automation/MenuItemEntity.h"

#include "targets/TargetContextManager.h"

#include <utility>

namespace tabwright::automation {

using intents::PropertyPresence;

std::optional<MenuItemEntity> MenuItemEntity::of(const AxeMenuItem& item) {
  auto app = targets::targetContextOf(item.app);
  if (!app)
    return std::nullopt;
  return MenuItemEntity{item.path, item.pathSegments, std::move(*app)};
}

std::string MenuItemEntity::displayRepresentation() const {
  return app.name + ": " + path;
}

const intents::EntityDefinition<MenuItemEntity>& MenuItemEntity::definition() {
  static const intents::EntityDefinition<MenuItemEntity> definition(
      "MenuItemEntity",
      {{"path", &MenuItemEntity::path},
       {"pathSegments", &MenuItemEntity::pathSegments, PropertyPresence::needed},
       {"app", &MenuItemEntity::app, PropertyPresence::needed}},
      [](const MenuItemEntity& item) { return item.displayRepresentation(); }, intents::TextForm::none,
      // The columns of its tables.
      {"path", "app"});
  return definition;
}

} // namespace tabwright::automation
