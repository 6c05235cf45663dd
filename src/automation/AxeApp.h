#pragma once

#include "automation/AxeMenuBar.h"
#include "automation/DesktopServices.h"

#include <expected>
#include <optional>

namespace tabwright::automation {

/// One running application as the accessibility bus shows it.
///
///     AxeApp mousepad(*services.targets.findApplication("org.xfce.mousepad"), services, limits);
///     if (const auto bar = mousepad.menuBar())
///       const auto item = bar->menuItem({"File", "Save As…"}, TitleCase::counts);
///
/// The reads of its menus end by the limits, and block the thread. One caller uses it.
class AxeApp {
public:
  /// Reads nothing yet. The services outlive this.
  AxeApp(targets::RunningApplication app, const DesktopServices& services, platform::CallLimits limits)
      : app_(std::move(app)), services_(services), limits_(std::move(limits)) {}

  /// As it was given; it may have quit since.
  [[nodiscard]] const targets::RunningApplication& app() const { return app_; }

  /// The element that its windows are children of. A browser of the Chromium family is told to show its controls first.
  /// Throws a platform::Failure for an application that doesn't show itself.
  [[nodiscard]] platform::AccessibleElement element() const;

  /// The menu bar of its active window, or else of the first one that has one. A browser of the Chromium family has
  /// none; there the menu behind the three dots stands for it, as a bar with one item.
  ///
  /// Found once and kept. Where there is none it is `appHasNoMenuBar`, with what kept it from being read as the cause,
  /// and the next call looks again. Throws DesktopFailure `stopped`.
  [[nodiscard]] std::expected<AxeMenuBar, engine::AxeFailure> menuBar();

private:
  const targets::RunningApplication app_;
  const DesktopServices& services_;
  const platform::CallLimits limits_;
  std::optional<AxeMenuBar> menuBar_;
};

} // namespace tabwright::automation
