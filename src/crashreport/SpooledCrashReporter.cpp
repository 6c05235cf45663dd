#include "crashreport/SpooledCrashReporter.h"

#include "crashreport/ReportEvent.h"
#include "platform/Logger.h"

#include <utility>

namespace tabwright::crashreport {

namespace {

const platform::Logger spoolLog("CrashReporter");

} // namespace

SpooledCrashReporter::SpooledCrashReporter(ReportOptions options) : options_(std::move(options)) {}

void SpooledCrashReporter::start() noexcept {
  try {
    const platform::MutexLock lock(mutex_);
    spool_.emplace(options_.spoolFolder);
    handler_.emplace(*spool_, options_.program);
  } catch (const std::exception& error) {
    spoolLog.error("Error reports are off or incomplete: {}", error.what());
  }
}

void SpooledCrashReporter::captureError(const std::exception& error) noexcept {
  logging_.captureError(error);
  add(error);
}

void SpooledCrashReporter::captureMessage(std::string_view message) noexcept {
  logging_.captureMessage(message);
  add(message);
}

bool SpooledCrashReporter::hasReports() const {
  const platform::MutexLock lock(mutex_);
  return spool_ && spool_->hasReports();
}

template <class Occurrence>
void SpooledCrashReporter::add(const Occurrence& occurrence) noexcept {
  try {
    const std::string envelope = envelopeOf(ReportEvent::of(occurrence, options_.program));
    const platform::MutexLock lock(mutex_);
    if (spool_)
      spool_->add(envelope);
  } catch (const std::exception& failure) {
    spoolLog.error("A report is lost: {}", failure.what());
  }
}

} // namespace tabwright::crashreport
