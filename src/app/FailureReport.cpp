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

} // namespace

// A browser that can't be found may be one that doesn't run, which that failure's own words don't tell.
std::string_view hintFor(const platform::Failure& failure) {
  if (failure.identity().caseName != "browserNotFound")
    return "";
  for (const platform::BrowserFacts& facts : platform::browserTable) {
    if (!platform::RunningBrowsers().find(facts).empty())
      return "";
  }
  return "No supported browser is running now. “tabwright browser chromium” starts one.\n";
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
  report.text = failure.errorDescription() + "\n";
  if (const std::string cause = host::causeLine(failure); !cause.empty())
    report.text += cause + "\n";
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
    report.text = "tabwright: " + std::string(hintFor(failure)) + report.text;
  return report;
}

} // namespace tabwright::app
