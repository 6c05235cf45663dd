// The exit code follows from the failure's class alone, so a new failure needs no row here. Advice is added only where
// the failure's own sentence leaves out what helps: that no browser runs at all, or what lies beneath it. JSON leaves
// it out, as it has the cause as a member.
#include "app/FailureReport.h"

#include "host/FailureWords.h"
#include "platform/linux/RunningBrowsers.h"

#include <boost/json/serialize.hpp>

namespace tabwright::app {
namespace {

using platform::FailureClass;

// A browser that can't be found may be one that doesn't run, which that failure's own words don't tell, and those
// beneath it no better.
bool lacksAnyBrowser(const platform::Failure& failure) {
  return failure.identity().failureClass == FailureClass::notFound && platform::RunningBrowsers().findAll().empty();
}

// The catalogue's sentences about files were worded for another system, so the words of the one at hand come first.
bool isOfSystem(const platform::Failure& failure) {
  return failure.cause() && failure.cause()->identity.failureClass == FailureClass::system;
}

} // namespace

std::string adviceFor(const platform::Failure& failure) {
  return lacksAnyBrowser(failure) ? "No supported browser is running now. “tabwright browser chromium” starts one."
                                  : host::causeLine(failure);
}

ExitCode exitCodeOf(const platform::Failure& failure) {
  switch (failure.identity().failureClass) {
  case FailureClass::failed:
  case FailureClass::system:
    return ExitCode::failed;
  case FailureClass::wrongUse:
    return ExitCode::wrongUse;
  case FailureClass::unreachable:
  case FailureClass::notFound:
    return ExitCode::noBrowser;
  }
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
  else if (lacksAnyBrowser(failure))
    report.text = advice + "\n"; // the sentence speaks of one that isn't installed
  else if (isOfSystem(failure) || advice != host::causeLine(failure))
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
