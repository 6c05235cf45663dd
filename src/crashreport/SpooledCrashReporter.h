#pragma once

#include "crashreport/CrashHandler.h"
#include "crashreport/CrashReporter.h"
#include "crashreport/LoggingCrashReporter.h"
#include "crashreport/ReportOptions.h"
#include "crashreport/ReportSpool.h"
#include "platform/Mutex.h"

#include <optional>

namespace tabwright::crashreport {

/// Puts what it is told into the spool, from where it is sent later (ReportSender.h), and logs it. From `start` on
/// crashes of this process are recorded there, too, for as long as this lives.
///
/// A spool that can't be made is logged, and everything else is then, too.
class SpooledCrashReporter final : public CrashReporter {
public:
  /// Touches nothing yet.
  explicit SpooledCrashReporter(ReportOptions options);

  void start() noexcept override;
  void captureError(const std::exception& error) noexcept override;
  void captureMessage(std::string_view message) noexcept override;

  /// True when there are reports to be sent.
  [[nodiscard]] bool hasReports() const;

private:
  template <class Occurrence>
  void add(const Occurrence& occurrence) noexcept;

  const ReportOptions options_;
  LoggingCrashReporter logging_;
  mutable platform::Mutex mutex_;
  std::optional<ReportSpool> spool_ GUARDED_BY(mutex_);
  std::optional<CrashHandler> handler_ GUARDED_BY(mutex_);
};

} // namespace tabwright::crashreport
