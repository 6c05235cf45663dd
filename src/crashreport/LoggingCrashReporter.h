#pragma once

#include "crashreport/CrashReporter.h"

namespace tabwright::crashreport {

/// Writes reported errors to the log, at error level, and messages at info level. Nothing leaves the machine.
class LoggingCrashReporter final : public CrashReporter {
public:
  void captureError(const std::exception& error) noexcept override;
  void captureMessage(std::string_view message) noexcept override;
};

} // namespace tabwright::crashreport
