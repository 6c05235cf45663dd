#include "app/FailureReport.h"

#include "host/FailureWords.h"
#include "platform/BrowserTable.h"
#include "platform/linux/RunningBrowsers.h"

#include <boost/json/serialize.hpp>

#include <algorithm>
#include <string_view>

// Kinds are told apart by the identity that every failure carries, so that this file needs to know no catalogue.

namespace tabwright::app {
namespace {

struct Row {
  std::string_view type;
  std::string_view caseName; ///< empty: every case of the type
  ExitCode exitCode;
};

constexpr Row rows[]{
    {"UsageError", "", ExitCode::wrongUse},
    {"NeedsValue", "", ExitCode::wrongUse},
    {"ValueError", "", ExitCode::wrongUse},
    {"JSONFailure", "", ExitCode::wrongUse}, // only parameters are such documents
    {"InvalidWorkflow", "", ExitCode::wrongUse},
    {"NoBrowser", "", ExitCode::noBrowser},
    {"ScriptacularError", "browserNotFound", ExitCode::noBrowser},
    {"ScriptacularError", "javascriptFromAppleEventsDisabled", ExitCode::noBrowser},
    {"DriverFault", "notRunning", ExitCode::noBrowser},
    {"DriverFault", "notAccepting", ExitCode::noBrowser},
    {"DriverFault", "lost", ExitCode::noBrowser},
};

// Numbers by which a script says that an application isn't there: not running, connection lost, not authorised.
constexpr int unreachableNumbers[]{-600, -609, -1743};

// A browser that can't be found may be one that doesn't run, which that failure's own words don't tell, and those
// beneath it no better.
bool lacksAnyBrowser(const platform::Failure& failure) {
  return failure.identity().caseName == "browserNotFound" && platform::RunningBrowsers().findAll().empty();
}

// The catalogue's sentences about files were worded for another system, so the words of the one at hand come first.
bool isOfFiles(const platform::Failure& failure) {
  return failure.cause() && failure.cause()->identity.type == "FileFailure";
}

} // namespace

std::string adviceFor(const platform::Failure& failure) {
  return lacksAnyBrowser(failure) ? "No supported browser is running now. “tabwright browser chromium” starts one."
                                  : host::causeLine(failure);
}

ExitCode exitCodeOf(const platform::Failure& failure) {
  const platform::FailureIdentity identity = failure.identity();
  for (const Row& row : rows) {
    if (row.type == identity.type && (row.caseName.empty() || row.caseName == identity.caseName))
      return row.exitCode;
  }
  if (identity.type == "ScriptError" && identity.number && std::ranges::count(unreachableNumbers, *identity.number))
    return ExitCode::noBrowser;
  return ExitCode::failed;
}

FailureReport reportOf(const platform::Failure& failure, ReportForm form) {
  FailureReport report{.exitCode = exitCodeOf(failure), .text = {}};
  if (form == ReportForm::json) {
    report.text = boost::json::serialize(host::failureJson(failure)) + "\n";
    return report;
  }
  const std::string sentence = failure.errorDescription() + "\n";
  const std::string advice = adviceFor(failure);
  if (advice.empty())
    report.text = sentence;
  else if (isOfFiles(failure) || advice != host::causeLine(failure))
    report.text = advice + "\n" + sentence;
  else
    report.text = sentence + advice + "\n";
  return report;
}

std::string noticeReport(const platform::Notice& notice, ReportForm form) {
  if (form == ReportForm::json)
    return boost::json::serialize(host::noticeJson(notice)) + "\n";
  return "tabwright: " + notice.sentence + "\n";
}

FailureReport commandReportOf(const platform::Failure& failure, ReportForm form) {
  FailureReport report = reportOf(failure, form);
  if (form == ReportForm::sentence)
    report.text.insert(0, "tabwright: ");
  return report;
}

} // namespace tabwright::app
