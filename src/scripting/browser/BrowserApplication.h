#pragma once

#include "applescript/events/AppleEventMessage.h"
#include "applescript/values/ScriptableApplication.h"
#include "platform/BrowserTable.h"
#include "scripting/browser/BrowserScope.h"
#include "scripting/browser/IndexedSnapshot.h"
#include "scripting/driver/BrowserDriver.h"
#include "scripting/model/ObjectModel.h"

#include <functional>
#include <memory>
#include <string>

namespace tabwright::scripting {

/// The functions that a browser's application needs beside its driver. All may be empty.
struct BrowserHooks {
  /// Brings the browser's frontmost window to the front by the window system, for one that takes no commands. Throws
  /// where that can't be done either.
  std::function<void()> raise;
  std::function<void()> launch;      ///< starts the browser when `activate` finds it not running; throws when it can't
  std::function<bool()> isFrontmost; ///< whether the browser is the desktop's frontmost application
};

/// The common part of the scriptable applications of both browser families: one road for every event (answer it from
/// one snapshot, else run the family's command), activate and quit, and the translation of the driver's failures into
/// errors of the language.
///
/// A family derives from it, and gives it the model of its dictionary and the commands that are its own.
///
/// Safe from several threads at once; the driver is called without any lock held.
class BrowserApplication : public applescript::ScriptableApplication,
                           public std::enable_shared_from_this<BrowserApplication> {
public:
  [[nodiscard]] const std::string& name() const final { return name_; }
  [[nodiscard]] const std::string& bundleIdentifier() const final { return bundleIdentifier_; }
  [[nodiscard]] const applescript::Terminology* terminology() const final { return &model_.terminology(); }
  /// Answers one event within its limits. Throws ScriptError; failures of the driver come as `scriptError` words them.
  applescript::Value handle(const applescript::AppleEventMessage& message) final;
  /// Connects to nothing and throws nothing.
  [[nodiscard]] bool isRunning() final { return driver_->isRunning(); }

protected:
  /// `model` outlives this; `facts` is copied from. The driver may be shared with others.
  BrowserApplication(const platform::BrowserFacts& facts, std::shared_ptr<BrowserDriver> driver, BrowserHooks hooks,
                     const ObjectModel& model);

  /// Runs a command of the family's dictionary; throws −1708 for one that it doesn't know.
  virtual applescript::Value perform(BrowserScope& scope) = 0;

private:
  /// Brings the browser to the front: by a command, else by the window system; starts it where there is a launcher.
  void activate(BrowserScope& scope);

  std::string name_;
  std::string bundleIdentifier_;
  /// Never null, as the applications are made only where there is a driver.
  std::shared_ptr<BrowserDriver> driver_;
  BrowserHooks hooks_;
  const ObjectModel& model_;
  /// Shared by the events of all scripts.
  SnapshotCache cache_;
};

} // namespace tabwright::scripting
