#pragma once

#include "engine/TargetContext.h"
#include "targets/BrowserProbe.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::targets {

using engine::TargetContext;

/// The target that a running application is: its bundle identifier in lower case, and the name that the system shows.
/// Nothing where either is blank. The application needn't be a browser.
[[nodiscard]] std::optional<TargetContext> targetContextOf(const RunningApplication& application);

/// Knows which supported browsers are installed and which run, and offers them as targets of actions.
///
/// The program makes one, over its probe of the machine. Installed applications are looked for once, on first use, so
/// one that is installed later shows up in the next process; running ones are looked for at every call. Safe to use
/// from any thread.
///
///     for (const TargetContext& browser : manager.runningBrowsers()) ...
///     if (const auto front = manager.findApplication(engine::frontmostTargetContext().id)) ...
class TargetContextManager {
public:
  /// A titled group of targets, unique and in order. `label` is in English.
  struct AppSection {
    std::string label;
    std::vector<TargetContext> items;
  };

  /// The groups that are wanted. All are, as made.
  struct Sections {
    bool dynamic = true;
    bool running = true;
    bool installed = true;
  };

  /// `probe` outlives the manager.
  explicit TargetContextManager(const BrowserProbe& probe) : probe_(probe) {}

  /// The applications that were found on the disk, by name ignoring case; of equal ones the first.
  [[nodiscard]] const std::vector<TargetContext>& installedApps() const;
  /// The supported browsers that are among them, name included, in the order of `supportedBrowsers`.
  [[nodiscard]] const std::vector<TargetContext>& installedBrowsers() const;
  /// The supported browsers that run now, each once, by the name that the system shows ignoring case.
  [[nodiscard]] std::vector<TargetContext> runningBrowsers() const;
  /// The other applications that run now, in the same order.
  [[nodiscard]] std::vector<TargetContext> otherApplications() const;
  /// "Dynamic" with the frontmost entry, "Running browsers", "Installed browsers": those wanted, in this order, empty
  /// ones included. Running browsers are looked for only when their section is wanted.
  [[nodiscard]] std::vector<AppSection> sections(Sections wanted) const;

  /// The application of this id (in lower case) that runs now, the first if there are several, or else the only one of
  /// this name or short name; for the id of the frontmost entry whichever application is frontmost. Nothing when there
  /// is none.
  [[nodiscard]] std::optional<RunningApplication> findApplication(std::string_view id) const;

private:
  /// Those that are supported browsers, or those that aren't.
  [[nodiscard]] std::vector<TargetContext> running(bool areBrowsers) const;
  /// Fills the lists below, once in the life of this.
  void findInstalled() const;

  const BrowserProbe& probe_;
  mutable std::once_flag installedOnce_;
  mutable std::vector<TargetContext> installedApps_;
  mutable std::vector<TargetContext> installedBrowsers_;
};

} // namespace tabwright::targets
