#pragma once

namespace tabwright::shell {

/// Notified of the start and the end of the process, each once, on the main actor.
class ApplicationDelegate {
public:
  virtual ~ApplicationDelegate() = default;

  /// The process is ready to work.
  virtual void applicationDidFinishLaunching() = 0;
  /// The end is decided: nothing can hold it up.
  virtual void applicationWillTerminate() = 0;
};

} // namespace tabwright::shell
