#pragma once

#include "engine/TargetContext.h"
#include "targets/BrowserProbe.h"

#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace tabwright::targets {

using engine::TargetContext;

/// Knows which supported browsers are installed and which run, and offers them as targets of actions.
///
/// The program makes one, over its probe of the machine. Installed browsers are looked for once, on first use, so one
/// that is installed later shows up in the next process; running ones are looked for at every call. Safe to use from
/// any thread.
class TargetContextManager {
public:
  /// A titled group of targets, unique and in order.
  struct AppSection {
    std::string label;
    std::vector<TargetContext> items;
  };

  /// Which groups are wanted.
  struct Sections {
    bool dynamic = true;
    bool running = true;
    bool installed = true;
  };

  /// `probe` outlives the manager.
  explicit TargetContextManager(const BrowserProbe& probe) : probe_(probe) {}

  /// The supported browsers that are installed, in the order of `supportedBrowsers`.
  [[nodiscard]] const std::vector<TargetContext>& installedBrowsers() const;
  /// The supported browsers that run now, by name.
  [[nodiscard]] std::vector<TargetContext> runningBrowsers() const;
  /// "Dynamic" with the frontmost entry, "Running browsers", "Installed browsers": those wanted, in this order, empty
  /// ones included.
  [[nodiscard]] std::vector<AppSection> sections(Sections wanted) const;
  /// All values of all sections whose id is among `ids`, in section order: a running browser comes twice.
  [[nodiscard]] std::vector<TargetContext> entities(std::span<const std::string> ids) const;

private:
  const BrowserProbe& probe_;
  mutable std::once_flag installedOnce_;
  mutable std::vector<TargetContext> installedBrowsers_;
};

} // namespace tabwright::targets
