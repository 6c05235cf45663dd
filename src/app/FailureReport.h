#pragma once

#include "app/ExitCode.h"
#include "platform/Failure.h"

#include <string>

namespace tabwright::app {

/// The reader of a report: a person, or a program.
enum class ReportForm { sentence, json };

/// All that the caller is told of a failure: its exit code, and what goes to standard error.
///
/// A sentence ends in a line feed, and has its advice in another line: beneath it, or above it where that is what helps
/// first. JSON is one line (`host::failureJson`).
struct FailureReport {
  ExitCode exitCode = ExitCode::failed;
  std::string text;
};
[[nodiscard]] FailureReport reportOf(const platform::Failure& failure, ReportForm form);

/// The same as the command line words it: with the program's name before the sentence.
[[nodiscard]] FailureReport commandReportOf(const platform::Failure& failure, ReportForm form);

/// A notice as it goes to standard error beside a success: a line with the program's name in front, or a line of JSON
/// (`host::noticeJson`).
[[nodiscard]] std::string noticeReport(const platform::Notice& notice, ReportForm form);

/// That advice alone: what to do about a failure, or what lies beneath it; empty for most. Without a line feed. Looks
/// at the process table for a failure to find a browser.
[[nodiscard]] std::string adviceFor(const platform::Failure& failure);

/// The exit code alone: 2 for wrong use and missing values, 3 where no browser could be reached, else 1.
[[nodiscard]] ExitCode exitCodeOf(const platform::Failure& failure);

} // namespace tabwright::app
