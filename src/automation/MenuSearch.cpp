// Each way ends in one of the two searches of the menu bar: by a path of titles, or by one title anywhere. The bar is
// found anew for each search, as menus come and go with the application's windows.
#include "automation/MenuSearch.h"

#include "automation/AxeApp.h"
#include "automation/MenuPath.h"
#include "platform/Whitespace.h"

#include <fmt/core.h>

#include <vector>

namespace tabwright::automation {

namespace {

MenuItemResult findByTitles(const targets::RunningApplication& app, std::span<const std::string> segments,
                            TitleCase titleCase, const DesktopServices& services, const platform::CallLimits& limits) {
  AxeApp axeApp(app, services, limits);
  const auto bar = axeApp.menuBar();
  if (!bar)
    return std::unexpected(bar.error());
  return bar->menuItem(segments, titleCase);
}

} // namespace

MenuItemResult findMenuItemByTitle(const targets::RunningApplication& app, std::string_view title,
                                   StringFilterEnum filter, TitleCase titleCase, const DesktopServices& services,
                                   const platform::CallLimits& limits) {
  AxeApp axeApp(app, services, limits);
  const auto bar = axeApp.menuBar();
  if (!bar)
    return std::unexpected(bar.error());
  return bar->menuItem(title, filter, titleCase);
}

MenuItemResult findMenuItemByPath(const targets::RunningApplication& app, std::string_view path, TitleCase titleCase,
                                  const DesktopServices& services, const platform::CallLimits& limits) {
  return findByTitles(app, segmentsOfPath(path), titleCase, services, limits);
}

MenuItemResult findMenuItemBySegments(const targets::RunningApplication& app,
                                      std::span<const std::optional<std::string>> segments, TitleCase titleCase,
                                      const DesktopServices& services, const platform::CallLimits& limits) {
  std::vector<std::string> given;
  for (const std::optional<std::string>& segment : segments) {
    if (segment && !platform::isBlank(*segment))
      given.push_back(*segment);
  }
  return findByTitles(app, given, titleCase, services, limits);
}

MenuItemResult findMenuItemByReference(const MenuItemEntity& reference, const DesktopServices& services,
                                       const platform::CallLimits& limits) {
  const auto app = services.targets.findApplication(reference.app.id);
  if (!app)
    return std::unexpected(platform::failure(engine::AxeError::appCouldNotBeActivated)
                               .causedBy(platform::Notice{engine::identity(engine::AxeError::appCouldNotBeActivated),
                                                          fmt::format("{} doesn’t run.", reference.app.name)}));
  // The titles are the application's own, so nothing has to be forgiven in them.
  return findByTitles(*app, reference.pathSegments, TitleCase::counts, services, limits);
}

} // namespace tabwright::automation
