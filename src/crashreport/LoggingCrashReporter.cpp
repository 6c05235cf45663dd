#include "crashreport/LoggingCrashReporter.h"

#include "platform/Logger.h"

namespace tabwright::crashreport {

namespace {

const platform::Logger log("CrashReporter");

} // namespace

void LoggingCrashReporter::captureError(const std::exception& error) noexcept {
  try {
    log.error("Captured error: {}", error.what());
  } catch (...) {
    // A report that can't be written mustn't end the work it reports on.
  }
}

void LoggingCrashReporter::captureMessage(std::string_view message) noexcept {
  try {
    log.info("Captured message: {}", message);
  } catch (...) {
    // As above.
  }
}

} // namespace tabwright::crashreport
