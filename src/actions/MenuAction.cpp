// The searches of `automation` block, so each goes to a thread; what an application is called, and which ones there
// are, is asked only for a sentence when none has the id that was given.
#include "actions/MenuAction.h"

#include "actions/UnknownApplication.h"
#include "platform/DesktopFault.h"
#include "platform/Logger.h"
#include "platform/Whitespace.h"

#include <fmt/core.h>
#include <fmt/ranges.h>

#include <chrono>
#include <utility>

namespace tabwright::actions {

using automation::MenuItemResult;
using engine::AxeError;

namespace {

const platform::Logger log("Menu actions");

} // namespace

platform::Task<targets::RunningApplication> MenuAction::activate(const engine::TargetContext& target,
                                                                 MissingTarget missing) {
  std::optional<targets::RunningApplication> application = co_await tryToActivate(target.id);
  if (!application && missing == MissingTarget::logged)
    log.error("App could not be found");
  if (!application)
    throw platform::failure(AxeError::appCouldNotBeActivated)
        .causedBy(unknownApplication(target.id, services().desktop));
  co_return std::move(*application);
}

void MenuAction::requireGivenText(const Parameter<std::string>& text) {
  if (platform::isBlank(*text))
    throw text.needsValueError();
}

void MenuAction::requireName(const MenuItemName& name, MenuItemBasicsSelection selection) {
  switch (selection) {
  case MenuItemBasicsSelection::title:
    return requireGivenText(name.title);
  case MenuItemBasicsSelection::path:
    return requireGivenText(name.path);
  case MenuItemBasicsSelection::segmentedPath:
    return;
  }
}

platform::Task<MenuItemResult> MenuAction::find(const targets::RunningApplication& app, const MenuItemName& name,
                                                MenuItemBasicsSelection selection, automation::StringFilterEnum filter,
                                                bool isCaseIgnored) {
  const auto titleCase = isCaseIgnored ? automation::TitleCase::ignored : automation::TitleCase::counts;
  return onThread([=, this](const platform::CallLimits& limits) {
    const automation::DesktopServices& desktop = services().desktop;
    switch (selection) {
    case MenuItemBasicsSelection::title:
      return automation::findMenuItemByTitle(app, *name.title, filter, titleCase, desktop, limits);
    case MenuItemBasicsSelection::path:
      return automation::findMenuItemByPath(app, *name.path, titleCase, desktop, limits);
    case MenuItemBasicsSelection::segmentedPath:
      break;
    }
    return automation::findMenuItemBySegments(app, name.segments.segments(), titleCase, desktop, limits);
  });
}

platform::Task<MenuItemResult> MenuAction::find(const automation::MenuItemEntity& reference) {
  return onThread([this, &reference](const platform::CallLimits& limits) {
    return automation::findMenuItemByReference(reference, services().desktop, limits);
  });
}

platform::Task<void> MenuAction::press(const automation::AxeMenuItem& item) {
  co_await onThread([&item](const platform::CallLimits& limits) { item.press(limits); });
}

boost::json::value MenuAction::valueOf(const automation::AxeMenuItem& item) {
  return intents::ValueTraits<std::optional<automation::MenuItemEntity>>::toJson(automation::MenuItemEntity::of(item));
}

} // namespace tabwright::actions
