#pragma once

#include <exception>
#include <string_view>

namespace tabwright::crashreport {

/// Takes the unexpected errors that the developers should hear of, beside the user. Safe to use from any thread;
/// nothing throws, since a report mustn't end the work that it reports on.
class CrashReporter {
public:
  virtual ~CrashReporter() = default;

  /// Begins to take reports, and to notice crashes where that is the reporter's to do. Called once, on the main thread.
  virtual void start() noexcept {}
  /// Reports an error that the program goes on after.
  virtual void captureError(const std::exception& error) noexcept = 0;
  /// Reports something that is no error. The text is the program's own, and holds nothing of the user's.
  virtual void captureMessage(std::string_view message) noexcept = 0;
};

} // namespace tabwright::crashreport
