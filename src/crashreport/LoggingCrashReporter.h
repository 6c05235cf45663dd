#pragma once

#include "crashreport/CrashReporter.h"

namespace tabwright::crashreport {

/// Writes reported errors to the log, at error level. Nothing leaves the machine.
class LoggingCrashReporter final : public CrashReporter {
public:
  void captureError(const std::exception& error) noexcept override;
};

} // namespace tabwright::crashreport
