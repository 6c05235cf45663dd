#pragma once

#include "shell/Application.h"
#include "shell/DefaultsKeys.h"
#include "shell/Published.h"
#include "shell/RootViewSheet.h"
#include "shell/RootViewTab.h"

#include <string_view>

namespace tabwright::shell {

/// Stands for the text of "What's New"; it changes with that text.
inline constexpr std::string_view whatsNewChecksum = "67b4e7f3";

/// The state that the main window shows. One per process, made on the main actor; its published values change there
/// only.
class AppState {
public:
  /// Asks the application once whether it is hidden. As its last step decides whether "What's New" is to be shown: yes
  /// when another text than this one was marked as read before. A first launch counts this one as read.
  AppState(const Application& application, const DefaultsKeys& keys);

  /// True for a process that was started to serve an action, whatever it shows later. Readable from any thread.
  const bool isAppRunningHidden;

  /// The sheet that is to be shown over the main window.
  Published<RootViewSheet> selectedSheet{RootViewSheet::none};
  /// The tab that the main window shows.
  Published<RootViewTab> selectedView{RootViewTab::home};
  /// Set by whoever looks for newer versions.
  Published<bool> isAppUpdateAvailable{false};

  /// "Mark as read": "What's New" is closed, and won't be shown again until its text changes.
  void markWhatsNewAsRead();

private:
  /// Sets `selectedSheet`, or marks this text as read.
  void checkWhatsNew();

  const DefaultsKeys& keys_;
};

} // namespace tabwright::shell
