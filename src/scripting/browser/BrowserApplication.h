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
/// Safe from several threads at once; the driver is called without any lock held.
class BrowserApplication : public applescript::ScriptableApplication,
                           public std::enable_shared_from_this<BrowserApplication> {
public:
  [[nodiscard]] const std::string& name() const final { return name_; }
  [[nodiscard]] const std::string& bundleIdentifier() const final { return bundleIdentifier_; }
  [[nodiscard]] const applescript::Terminology* terminology() const final { return &model_.terminology(); }
  applescript::Value handle(const applescript::AppleEventMessage& message) final;
  [[nodiscard]] bool isRunning() final { return driver_->isRunning(); }

protected:
  BrowserApplication(const platform::BrowserFacts& facts, std::shared_ptr<BrowserDriver> driver, BrowserHooks hooks,
                     const ObjectModel& model);

  /// Runs a command of the family's dictionary; throws −1708 for one that it doesn't know.
  virtual applescript::Value perform(BrowserScope& scope) = 0;

private:
  void activate(BrowserScope& scope);

  std::string name_;
  std::string bundleIdentifier_;
  std::shared_ptr<BrowserDriver> driver_;
  BrowserHooks hooks_;
  const ObjectModel& model_;
  SnapshotCache cache_;
};

} // namespace tabwright::scripting
