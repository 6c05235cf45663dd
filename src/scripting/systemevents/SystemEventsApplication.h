#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/values/ScriptableApplication.h"
#include "scripting/systemevents/Desktop.h"

#include <memory>
#include <string>

namespace tabwright::scripting {

/// System Events as scripts see it: the dictionary's processes, windows, menus and keys over any Desktop.
///
/// `process "N"` finds a process by name or by bundle identifier. Answers name processes by their process id. Failures
/// of the desktop come out as error −10000 with their own sentence. Safe from several threads, as the desktop is.
///
///     // tell application "System Events" to tell process "Mousepad"
///     //   click menu item "Save" of menu 1 of menu bar item "File" of menu bar 1
///     //   keystroke "a" using command down
///     // end tell
class SystemEventsApplication final : public applescript::ScriptableApplication,
                                      public std::enable_shared_from_this<SystemEventsApplication> {
public:
  /// Not null. Nothing is asked of the desktop before the first event.
  explicit SystemEventsApplication(std::shared_ptr<Desktop> desktop);

  [[nodiscard]] const std::string& name() const override { return name_; }
  [[nodiscard]] const std::string& bundleIdentifier() const override { return bundleIdentifier_; }
  [[nodiscard]] const applescript::Terminology* terminology() const override;
  /// Throws ScriptError, within the limits of the event.
  applescript::Value handle(const applescript::AppleEventMessage& message) override;
  /// Always: this program plays it.
  [[nodiscard]] bool isRunning() override { return true; }

private:
  std::string name_ = "System Events";
  std::string bundleIdentifier_ = "com.apple.systemevents";
  std::shared_ptr<Desktop> desktop_;
};

} // namespace tabwright::scripting
