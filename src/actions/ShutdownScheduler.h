#pragma once

namespace tabwright::actions {

/// The self-timed quit of a process that was started in the background to serve actions.
class ShutdownScheduler {
public:
  virtual ~ShutdownScheduler() = default;

  /// Puts the quit off: it comes 120.1 seconds after the last call, whatever runs then. Does nothing in a
  /// process that the user started. From any thread; must not throw.
  virtual void scheduleShutdown() = 0;
};

/// The scheduler of a process that ends by itself, such as a command: nothing to put off.
class NoScheduledShutdown final : public ShutdownScheduler {
public:
  void scheduleShutdown() override;
};

} // namespace tabwright::actions
