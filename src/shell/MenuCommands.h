#pragma once

#include <array>
#include <string_view>

namespace tabwright::shell {

/// The place in the standard menus at which an entry goes.
enum class MenuPlacement {
  appSettings,  ///< in place of the settings item of the application's menu
  newItem,      ///< in place of the items of the File menu that open something new
  windowSize,   ///< in place of the size items of the Window menu
  help,         ///< in place of the items of the Help menu
  afterAppInfo, ///< behind the "About" item of the application's menu
};

/// The effect of choosing a menu command.
enum class MenuAction {
  none,            ///< a placement that is emptied; there is no command
  showMainWindow,  ///< `Varn::Windows::showMainWindow`
  checkForUpdates, ///< a check for newer versions, with its result shown
  openWebsite,     ///< opens `path` on the product's website, with the reference "ref=tw-macos"
  sendFeedback,    ///< opens a mail to the makers
};

/// One line of the menus that is the program's own.
struct MenuCommand {
  /// The place, and which section of it.
  MenuPlacement placement;
  int section; ///< sections of a placement count from 1, and are parted by lines
  /// English, as it stands in the menu; empty for a placement that is emptied.
  std::string_view title;
  MenuAction action;
  std::string_view path; ///< of `openWebsite`
};

/// All of them, in the order in which they stand.
inline constexpr std::array<MenuCommand, 9> menuCommands{{
    {MenuPlacement::appSettings, 1, "", MenuAction::none, ""},
    {MenuPlacement::newItem, 1, "", MenuAction::none, ""},
    {MenuPlacement::windowSize, 1, "Show main window", MenuAction::showMainWindow, ""},
    {MenuPlacement::help, 1, "Visit website", MenuAction::openWebsite, "/tabwright"},
    {MenuPlacement::help, 1, "Visit Actions Library", MenuAction::openWebsite, "/tabwright/actions"},
    {MenuPlacement::help, 1, "Visit Workflow Library", MenuAction::openWebsite, "/tabwright/workflows"},
    {MenuPlacement::help, 2, "Version history / Changelog", MenuAction::openWebsite, "/tabwright/changes"},
    {MenuPlacement::help, 3, "Send feedback or bug reports", MenuAction::sendFeedback, ""},
    {MenuPlacement::afterAppInfo, 1, "Check for Updates …", MenuAction::checkForUpdates, ""},
}};

namespace detail {
/// Checked when the program is compiled: a row that is emptied has no title, and only links have a path.
consteval bool isMenuTableSound() {
  for (const MenuCommand& command : menuCommands) {
    const bool isEmptied = command.action == MenuAction::none;
    const bool isLink = command.action == MenuAction::openWebsite;
    if (isEmptied != command.title.empty() || isLink != command.path.starts_with('/'))
      return false;
  }
  return true;
}
} // namespace detail
static_assert(detail::isMenuTableSound(), "a command has a title, and a link a path");

} // namespace tabwright::shell
