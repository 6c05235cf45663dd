#pragma once

#include "crashreport/SpooledCrashReporter.h"
#include "platform/UserDefaults.h"
#include "shell/ExceptionTracker.h"

#include <optional>
#include <string_view>

namespace tabwright::app {

/// The address that error reports go to, a DSN (crashreport/Dsn.h), as the build names it (TABWRIGHT_REPORT_DSN).
/// Empty: nothing is reported, and nothing is kept to be.
[[nodiscard]] std::string_view builtInReportAddress();

/// The reports of the background host: its reporter, and what starts that with the program.
struct ErrorReports {
  ErrorReports(crashreport::ReportOptions options, platform::UserDefaults& settings);

  /// The same to the address; nothing where it is empty, or no address, which is logged.
  [[nodiscard]] static std::optional<crashreport::ReportOptions> optionsFor(std::string_view address);

  /// Starts a process of its own that sends what waits, if anything does. Doesn't wait for it.
  void sendInBackground() const;

  crashreport::SpooledCrashReporter reporter;
  shell::ExceptionTracker tracker;
};

/// The word by which the program is started to send reports: "tabwright-host send-reports".
inline constexpr std::string_view sendReportsCommand = "send-reports";

/// Sends the reports that wait in the spool to the address and ends, after two minutes at most. Writes nothing but
/// the log. Yields the exit code.
[[nodiscard]] int sendReports(std::string_view address = builtInReportAddress());

} // namespace tabwright::app
