#pragma once

#include <exception>

namespace tabwright::crashreport {

/// Takes the unexpected errors that the developers should hear of, beside the user.
class CrashReporter {
public:
  virtual ~CrashReporter() = default;

  /// Reports an error that the program goes on after. Safe to call from any thread; never throws.
  virtual void captureError(const std::exception& error) noexcept = 0;
};

} // namespace tabwright::crashreport
