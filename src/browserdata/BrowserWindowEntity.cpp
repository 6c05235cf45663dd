#include "browserdata/BrowserWindowEntity.h"

#include "browserdata/EntityReference.h"
#include "engine/ScriptText.h"

namespace tabwright::browserdata {

using intents::PropertyPresence;

BrowserWindowEntity::BrowserWindowEntity(const BrowserWindowData& window, const engine::TargetContext& context)
    : targetContext(context), windowTitle(window.windowTitle), activeTab(window.activeTab, context),
      isPrivate(window.isPrivate), isVisible(window.isVisible), fullID(context.id + ":" + window.windowID) {
  tabs.reserve(window.tabsList.size());
  for (const BrowserTabData& tab : window.tabsList)
    tabs.emplace_back(tab, context);
}

std::optional<BrowserWindowEntity> BrowserWindowEntity::fromReference(std::string_view text) {
  const std::optional<EntityReference> reference = readReference(text);
  if (!reference)
    return std::nullopt;
  BrowserWindowEntity window;
  window.targetContext = reference->targetContext;
  window.fullID = reference->fullID;
  return window;
}

void BrowserWindowEntity::check() const {
  requireReference(fullID);
}

std::string BrowserWindowEntity::id() const {
  return engine::nativeID(fullID);
}

std::string BrowserWindowEntity::displayRepresentation() const {
  return windowTitle + " [" + targetContext.name + "]";
}

const intents::EntityDefinition<BrowserWindowEntity>& BrowserWindowEntity::definition() {
  static const intents::EntityDefinition<BrowserWindowEntity> definition(
      "BrowserWindowEntity",
      {{"targetContext", &BrowserWindowEntity::targetContext, PropertyPresence::needed},
       {"windowTitle", &BrowserWindowEntity::windowTitle},
       {"tabs", &BrowserWindowEntity::tabs},
       {"activeTab", &BrowserWindowEntity::activeTab},
       {"isPrivate", &BrowserWindowEntity::isPrivate},
       {"isVisible", &BrowserWindowEntity::isVisible},
       {"fullID", &BrowserWindowEntity::fullID, PropertyPresence::needed}},
      [](const BrowserWindowEntity& window) { return window.displayRepresentation(); }, intents::TextForm::names,
      // The columns of its tables.
      {"windowTitle", "tabs", "isPrivate", "isVisible", "fullID"});
  return definition;
}

} // namespace tabwright::browserdata
