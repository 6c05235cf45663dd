// A browser of the Chromium family is asked to show its controls before its element is looked for; its menu comes from
// another source than those of all other applications. The reason why no menus could be read is kept as the cause,
// since to a user an application without menus and one that doesn't answer look alike.
#include "automation/AxeApp.h"

#include "automation/ChromiumMenu.h"
#include "automation/MenuBarSearch.h"
#include "platform/BrowserTable.h"
#include "platform/DesktopFault.h"

#include <utility>

namespace tabwright::automation {

using engine::AxeError;

namespace {

engine::AxeFailure withoutMenuBar(std::optional<platform::Notice> cause) {
  return platform::failure(AxeError::appHasNoMenuBar).causedBy(std::move(cause));
}

bool isChromium(const targets::RunningApplication& app) {
  return platform::isOfChromiumFamily(app.bundleIdentifier);
}

} // namespace

platform::AccessibleElement AxeApp::element() const {
  if (isChromium(app_))
    services_.browserControls.show(app_, limits_);
  const auto root = services_.accessibility.findApplication(app_.process, limits_);
  if (!root)
    throw platform::failure(platform::DesktopFault::notShown, app_.localizedName);
  return *root;
}

std::expected<AxeMenuBar, engine::AxeFailure> AxeApp::menuBar() {
  if (menuBar_)
    return *menuBar_;
  std::optional<platform::Notice> cause;
  try {
    const platform::AccessibleElement root = element();
    const std::shared_ptr<MenuSource> menus = isChromium(app_)
                                                  ? ChromiumMenu::find(root, app_.process, services_, limits_)
                                                  : findMenuBar(services_.accessibility, root, limits_);
    if (menus)
      menuBar_ = AxeMenuBar::of(app_, menus->bar());
  } catch (const platform::DesktopFailure& failure) {
    if (failure.kind() == platform::DesktopFault::stopped)
      throw;
    cause = platform::asCause(failure);
  } catch (const platform::Failure& failure) {
    // A browser that doesn't show its controls fails in other ways than the desktop does.
    cause = platform::asCause(failure);
  }
  if (!menuBar_)
    return std::unexpected(withoutMenuBar(std::move(cause)));
  return *menuBar_;
}

} // namespace tabwright::automation
