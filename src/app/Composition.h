#pragma once

#include "actions/ShutdownScheduler.h"
#include "applescript/Interpreter.h"
#include "crashreport/CrashReporter.h"
#include "host/Catalogue.h"
#include "platform/Accessibility.h"
#include "platform/BrowserTable.h"
#include "scripting/driver/ChromiumDriver.h"
#include "shell/BrowserPermissions.h"
#include "shell/UserDefaultsManager.h"
#include "targets/TargetContextManager.h"

#include <functional>
#include <memory>

namespace tabwright::app {

/// Everything the program is made of, put together: the one place that names every concrete type.
///
/// Making one touches nothing outside; parts that cost time are made when they are first asked for. Browsers are
/// connected to by the first event that needs one. Safe to use from several threads once made. Scripts that run when it
/// is destroyed are stopped.
class Composition {
public:
  /// All that a process that stays gives to its actions; all of it outlives the composition.
  struct Lifecycle {
    shell::UserDefaultsManager& settings;
    actions::ShutdownScheduler& shutdown;
    crashreport::CrashReporter& crashReporter;
    /// Shows this program, for scripts that activate it; empty where it has no windows.
    std::function<void()> activateSelf = {};
  };

  /// For a process that runs one command: with the user's settings, and nothing to quit by itself. Throws nothing for a
  /// desktop or a browser that isn't there; who needs one hears of it.
  Composition();
  /// For a process that stays, such as the background host.
  explicit Composition(const Lifecycle& lifecycle);
  ~Composition();
  Composition(const Composition&) = delete;
  Composition& operator=(const Composition&) = delete;

  /// All actions, with this machine's choices. Lives as long as the composition.
  [[nodiscard]] const host::Catalogue& catalogue() const;
  /// The same actions, with choices that are alike on every machine: for documents. Uses this composition, which
  /// outlives it. Its actions are for looking at, not for running.
  [[nodiscard]] host::Catalogue referenceCatalogue() const;
  /// The interpreter that the actions' scripts run in, with the same browsers and desktop, for scripts of the user's
  /// own. Lives as long as the composition.
  [[nodiscard]] applescript::Interpreter& interpreter();

  /// The setup's trial of all browsers. Uses this composition.
  [[nodiscard]] shell::BrowserPermissions browserPermissions() const;
  [[nodiscard]] const targets::TargetContextManager& targets() const;
  [[nodiscard]] platform::Accessibility& accessibility();

  /// The driver of a browser of the Chromium family, the same at each call; null when that browser is not installed and
  /// doesn't run.
  [[nodiscard]] std::shared_ptr<scripting::ChromiumDriver> driver(const platform::BrowserFacts& facts);

private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

} // namespace tabwright::app
