#include "crashreport/LoggingCrashReporter.h"

namespace tabwright::crashreport {

void LoggingCrashReporter::captureError(const std::exception& error) noexcept {
  try {
    log_.error("Captured error: {}", error.what());
  } catch (...) {
    // A report that can't be written mustn't end the work it reports on.
  }
}

} // namespace tabwright::crashreport
