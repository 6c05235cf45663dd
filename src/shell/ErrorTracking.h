#pragma once

namespace tabwright::shell {

/// The reporting of crashes and of new releases, as far as the start of the program has to do with it. On the main
/// actor. Nothing throws: a program runs without its error tracking.
class ErrorTracking {
public:
  virtual ~ErrorTracking() = default;

  /// Starts the crash reporter. Called once, before anything else of the program can fail.
  virtual void start() = 0;
  /// Reports the launch if it is the first one of this release.
  virtual void reportLaunchOfNewRelease() = 0;
};

} // namespace tabwright::shell
