#pragma once

#include "crashreport/CrashReporter.h"
#include "platform/UserDefaults.h"
#include "shell/DefaultsKeys.h"
#include "shell/ErrorTracking.h"

namespace tabwright::shell {

/// Starts the crash reporter, and tells it of each release once. On the main actor.
class ExceptionTracker final : public ErrorTracking {
public:
  /// Both outlive the tracker.
  ExceptionTracker(crashreport::CrashReporter& reporter, platform::UserDefaults& store)
      : reporter_(reporter), keys_(store) {}

  void start() override;
  /// Sends the message "Launch " with the version, and remembers the release as reported, whether the message arrives
  /// or not. A first launch counts as one of a new release, and so does another build of the same version.
  void reportLaunchOfNewRelease() override;

private:
  crashreport::CrashReporter& reporter_;
  const DefaultsKeys keys_;
};

} // namespace tabwright::shell
