#pragma once

#include "crashreport/CrashReporter.h"
#include "platform/Logger.h"

namespace tabwright::crashreport {

/// Writes reported errors to the log, at error level. Nothing leaves the machine.
class LoggingCrashReporter final : public CrashReporter {
public:
  void captureError(const std::exception& error) noexcept override;

private:
  platform::Logger log_{"CrashReporter"};
};

} // namespace tabwright::crashreport
