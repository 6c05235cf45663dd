#include "shell/ExceptionTracker.h"
#include "shell/Varn.h"
#include "support/MemoryUserDefaults.h"
#include "support/RecordingCrashReporter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tabwright::shell {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ExceptionTrackerTest, ReportsTheLaunchOfEachBuildOnce) {
  testsupport::RecordingCrashReporter reporter;
  testsupport::MemoryUserDefaults defaults;
  const std::string launch = "Launch " + std::string(Varn::App::version());
  {
    ExceptionTracker tracker(reporter, defaults);
    tracker.start();
    EXPECT_TRUE(reporter.isStarted);
    EXPECT_THAT(defaults.writes, IsEmpty());
    tracker.reportLaunchOfNewRelease();
    tracker.reportLaunchOfNewRelease();
  }
  ExceptionTracker(reporter, defaults).reportLaunchOfNewRelease();
  EXPECT_THAT(reporter.messages, ElementsAre(launch));
  EXPECT_THAT(defaults.writes, ElementsAre("48ae42df"));
  EXPECT_EQ(DefaultsKeys(defaults).lastReportedRelease.get(), Varn::App::release());

  DefaultsKeys(defaults).lastReportedRelease.set(std::string(Varn::App::version()) + " (another build)");
  ExceptionTracker(reporter, defaults).reportLaunchOfNewRelease();
  EXPECT_THAT(reporter.messages, ElementsAre(launch, launch));
  EXPECT_THAT(reporter.captured, IsEmpty());
}

} // namespace
} // namespace tabwright::shell
