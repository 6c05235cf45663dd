#include "crashreport/LoggingCrashReporter.h"
#include "support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace tabwright::crashreport {
namespace {

TEST(LoggingCrashReporter, WritesAnErrorLine) {
  const testsupport::LogCapture log;
  LoggingCrashReporter reporter;
  reporter.captureError(std::runtime_error("disk full"));
  EXPECT_THAT(log.lines(), testing::ElementsAre("error CrashReporter: Captured error: disk full"));
}

} // namespace
} // namespace tabwright::crashreport
