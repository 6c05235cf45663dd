#include "app/ErrorReports.h"

#include "app/ExitCode.h"
#include "crashreport/ReportSender.h"
#include "platform/CallLimits.h"
#include "platform/LogSinks.h"
#include "platform/Logger.h"
#include "platform/linux/DetachedProcess.h"
#include "platform/linux/SystemClock.h"
#include "shell/Varn.h"

#include <chrono>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tabwright::app {
namespace {

using shell::Varn;

const platform::Logger reportsLog("ErrorReports");

constexpr std::chrono::seconds sendingPatience{100};
constexpr std::chrono::seconds longestLife{120};

} // namespace

std::string_view builtInReportAddress() {
  return TABWRIGHT_REPORT_DSN;
}

ErrorReports::ErrorReports(crashreport::ReportOptions options, platform::UserDefaults& settings)
    : reporter(std::move(options)), tracker(reporter, settings) {}

std::optional<crashreport::ReportOptions> ErrorReports::optionsFor(std::string_view address) {
  if (address.empty())
    return std::nullopt;
  const std::optional<crashreport::Dsn> dsn = crashreport::Dsn::parse(address);
  if (!dsn) {
    reportsLog.error("Errors aren't reported: the address that this build names has another form than "
                     "https://KEY@HOST/PROJECT");
    return std::nullopt;
  }
  return crashreport::ReportOptions{.dsn = *dsn,
                                    .program = {.releaseName = Varn::App::release(),
                                                .dist = std::string(Varn::App::build()),
                                                .environment = std::string(nameOf(Varn::App::currentBuild))}};
}

void ErrorReports::sendInBackground() const {
  if (!reporter.hasReports())
    return;
  std::error_code ignored; // a program without a path can't be started, which is told below
  const std::string program = std::filesystem::read_symlink("/proc/self/exe", ignored);
  if (const int error = platform::startDetached({program, std::string(sendReportsCommand)}, "/"); error != 0)
    reportsLog.error("The reports wait for the next start: {}", std::strerror(error));
}

int sendReports(std::string_view address) {
  if (address.empty()) {
    std::cerr << "tabwright-host: This build reports errors to nobody, so there is nothing to send.\n";
    return static_cast<int>(ExitCode::wrongUse);
  }
  ::alarm(static_cast<unsigned>(longestLife.count())); // whatever hangs then, such as a disk, ends with this
  platform::installLogSinks({.file = platform::defaultLogFile(), .fileLevel = platform::defaultFileLevel()});
  const auto options = ErrorReports::optionsFor(address);
  if (!options)
    return static_cast<int>(ExitCode::wrongUse);
  try {
    crashreport::ReportSpool spool(options->spoolFolder);
    const platform::SystemClock clock;
    crashreport::ReportSender({.spool = spool,
                               .dsn = options->dsn,
                               .client = "tabwright/" + std::string(Varn::App::version()),
                               .clock = clock})
        .send(platform::CallLimits().within(sendingPatience));
    return static_cast<int>(ExitCode::done);
  } catch (const std::exception& error) {
    reportsLog.error("Reports can't be sent: {}", error.what());
    return static_cast<int>(ExitCode::failed);
  }
}

} // namespace tabwright::app
