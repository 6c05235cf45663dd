#include "automation/ApplicationLaunch.h"
#include "support/ModelWorkspace.h"
#include "support/RunTask.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace tabwright::automation {
namespace {

using Texts = std::vector<std::string>;

class ActivateOrLaunch : public testing::Test {
protected:
  /// The process that came of it; 0 for none.
  pid_t run(const std::string& id, const platform::CallLimits& limits = {}) {
    const auto application = testsupport::runTask(activateOrLaunch(id, workspace.services, limits));
    return application ? application->process : 0;
  }

  testsupport::ModelWorkspace workspace;
};

TEST_F(ActivateOrLaunch, BringsARunningApplicationToTheFrontAtOnce) {
  workspace.run(1, "Front", "Front");
  workspace.run(2, "org.Example.Editor", "Editor");
  EXPECT_EQ(run("org.example.editor"), 2);
  EXPECT_EQ(run(".focussed"), 1);
  EXPECT_EQ(workspace.deeds, (Texts{"activate 2", "activate 1"}));
  EXPECT_TRUE(workspace.clock.sleeps.empty());
}

TEST_F(ActivateOrLaunch, StartsOneThatDoesNotRunAndWaitsForItsWindow) {
  workspace.known = {{"chromium", "Chromium Web Browser"}};
  workspace.onStart = [&] {
    workspace.probe.otherRunning.clear();
    workspace.run(3, "org.chromium.Chromium", "Chromium");
  };
  workspace.accessibility.onCall = [&] { workspace.deeds.push_back("accessibility"); };
  EXPECT_EQ(run("org.chromium.chromium"), 3);
  EXPECT_EQ(workspace.deeds, (Texts{"accessibility", "start Chromium Web Browser", "activate 3"}));
  EXPECT_EQ(workspace.clock.sleeps, std::vector<std::chrono::nanoseconds>{std::chrono::milliseconds(200)});
}

TEST_F(ActivateOrLaunch, GivesUpAfterFiveSeconds) {
  workspace.known = {{"slow", "Slow"}};
  EXPECT_EQ(run("slow"), 0);
  EXPECT_EQ(workspace.clock.sleeps.size(), 26u);
}

TEST_F(ActivateOrLaunch, YieldsNothingForWhatCannotBeStarted) {
  EXPECT_EQ(run("nowhere"), 0);
  EXPECT_EQ(run(".focussed"), 0);
  workspace.known = {{"broken", "Broken"}};
  workspace.accessibility.onCall = [] { throw platform::failure(platform::DesktopFault::noAccessibilityBus, "none"); };
  workspace.onStart = [] { throw platform::failure(platform::DesktopFault::cannotStart, "Broken: no program"); };
  EXPECT_EQ(run("broken"), 0);
  EXPECT_TRUE(workspace.clock.sleeps.empty());
}

TEST_F(ActivateOrLaunch, StartsNothingWithoutADisplay) {
  workspace.known = {{"editor", "Editor"}};
  workspace.onWindows = [] { throw platform::failure(platform::DesktopFault::noWindowSystem, "none"); };
  EXPECT_EQ(run("editor"), 0);
  EXPECT_TRUE(workspace.deeds.empty());
  workspace.onWindows = [] { throw platform::failure(platform::DesktopFault::wayland); };
  run("editor");
  EXPECT_EQ(workspace.deeds, Texts{"start Editor"});
}

TEST_F(ActivateOrLaunch, LeavesAnApplicationWhereItIsOnADesktopThatShowsNoWindows) {
  workspace.run(2, "editor", "Editor");
  workspace.onWindows = [] { throw platform::failure(platform::DesktopFault::wayland); };
  platform::CallLimits limits;
  limits.notices = std::make_shared<platform::Notices>();
  EXPECT_EQ(run("editor", limits), 2);
  ASSERT_EQ(limits.notices->all().size(), 1u);
  EXPECT_EQ(limits.notices->all()[0].identity.caseName, "wayland");
}

} // namespace
} // namespace tabwright::automation
