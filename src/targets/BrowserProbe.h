#pragma once

#include "engine/TargetContext.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::targets {

/// An application with a face for the user, as it runs. One for each process that shows itself, so an application may
/// come several times.
struct RunningApplication {
  std::string bundleIdentifier; ///< in any case; empty for an application without one
  std::string localizedName;    ///< as the system shows it
  pid_t process = 0;
  bool isFrontmost = false; ///< at most one of all
};

/// Finds the machine's applications. Safe to use from any thread; leaves out what can't be found out, and never throws
/// for that. The seam to the machine: a program has a `MachineProbe`, and a test one of its own. Both questions block
/// their thread while the machine is looked at.
class BrowserProbe {
public:
  virtual ~BrowserProbe() = default;

  /// The applications on the disk, at least those that may be browsers: bundle identifiers in any case, in any order.
  /// Reads the disk; the answer isn't kept.
  [[nodiscard]] virtual std::vector<engine::TargetContext> installedApplications() const = 0;
  /// The applications that run at this moment, at least the browsers that serve this user; the frontmost one first.
  [[nodiscard]] virtual std::vector<RunningApplication> runningApplications() const = 0;
};

} // namespace tabwright::targets
