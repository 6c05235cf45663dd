#include "engine/EngineWorld.h"
#include "engine/errors/ScriptacularError.h"
#include "shell/BrowserPermissions.h"
#include "shell/OnboardingFlow.h"
#include "shell/Varn.h"
#include "support/LogCapture.h"
#include "support/MemoryUserDefaults.h"
#include "support/ModelApplication.h"
#include "support/ModelBrowserProbe.h"
#include "support/RunTask.h"
#include "targets/SupportedBrowsers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tabwright::shell {
namespace {

using testing::ElementsAre;

TEST(OnboardingFlow, LeadsThroughFiveStepsAndBack) {
  OnboardingFlow flow;
  EXPECT_EQ(flow.currentStepNo.value(), 1);
  EXPECT_EQ(flow.unresolvedIssueAtStep.value(), 0);
  EXPECT_EQ(flow.numberOfSteps, 5);
  EXPECT_EQ(flow.nextButtonTitle(), "Continue");
  flow.previousStep(); // there is none before
  EXPECT_EQ(flow.currentStepNo.value(), 1);
  flow.nextStep();
  EXPECT_EQ(flow.nextButtonTitle(), "I've done that, continue");
  EXPECT_EQ(flow.prevButtonTitle(), "Back");
  EXPECT_TRUE(flow.canGoForward());
  flow.nextStep();
  flow.accessIsGranted(true);
  flow.nextStep();
  flow.nextStep();
  EXPECT_EQ(flow.currentStep().view, OnboardingPage::finished);
  flow.nextStep(); // nor behind
  EXPECT_EQ(flow.currentStepNo.value(), 5);
}

TEST(OnboardingFlow, HoldsTheUserAtTheBrowsersUntilAllAreGranted) {
  OnboardingFlow flow;
  flow.nextStep();
  flow.nextStep();
  flow.browserPermissionsAppear(false);
  EXPECT_EQ(flow.unresolvedIssueAtStep.value(), 3);
  EXPECT_FALSE(flow.canGoForward());
  flow.previousStep();
  EXPECT_TRUE(flow.canGoForward());
  EXPECT_EQ(flow.nextButtonTitle(), "I've done that, continue");
  flow.nextStep();
  EXPECT_FALSE(flow.canGoForward());
  flow.accessIsGranted(true);
  EXPECT_TRUE(flow.canGoForward());
  flow.accessIsGranted(false); // a new run has begun
  EXPECT_FALSE(flow.canGoForward());
  flow.browserPermissionsAppear(true); // as an earlier setup left it
  EXPECT_TRUE(flow.canGoForward());
}

TEST(OnboardingWindow, IsOneAndStartsOverOnlyWhenItWasClosed) {
  testsupport::ModelApplication application;
  Varn::Windows::showOnboardingWindow(application);
  EXPECT_THAT(application.events,
              ElementsAre("content onboarding", "title Set up Tabwright", "front onboarding", "center onboarding"));
  application.events.clear();
  Varn::Windows::showOnboardingWindow(application, "Another");
  EXPECT_THAT(application.events, ElementsAre("front onboarding"));
  application.onboardingWindow()->close();
  application.events.clear();
  Varn::Windows::showOnboardingWindow(application);
  EXPECT_THAT(application.events, ElementsAre("content onboarding", "front onboarding"));
}

TEST(OnboardingWindow, IsAnErrorInTheLogWhereThereIsNone) {
  testsupport::ModelApplication application;
  application.canMakeWindows = false;
  const testsupport::LogCapture log;
  Varn::Windows::showOnboardingWindow(application, "Title");
  EXPECT_TRUE(application.events.empty());
  EXPECT_TRUE(log.holds("error Varn-Helpers: Couldn't create onboarding window"));
}

class Permissions : public testing::Test {
protected:
  void request() {
    const targets::TargetContextManager targets(probe);
    BrowserPermissions permissions({.settings = settings, .targets = targets, .scripts = world.services()});
    testsupport::runTask(permissions.requestBrowserPermissions());
  }
  [[nodiscard]] std::string_view status(const std::string& id) const {
    return rawValue(keys.browserStates.get().at(id).assistiveAccess);
  }

  testsupport::EngineWorld world;
  testsupport::MemoryUserDefaults store;
  DefaultsKeys keys{store};
  UserDefaultsManager settings{store, keys};
  testsupport::ModelBrowserProbe probe{{}, {}};
};

TEST_F(Permissions, AreGrantedWhereThereIsNothingToGrant) {
  request();
  EXPECT_TRUE(keys.isAssistiveAccessGranted.get());
  EXPECT_TRUE(world.tasks.events.empty());
  for (const auto& [id, state] : keys.browserStates.get())
    EXPECT_EQ(rawValue(state.assistiveAccess), "appNotInstalled") << id;
}

TEST_F(Permissions, AreTriedOneBrowserAfterTheOther) {
  probe.installed = {"chromium", "chrome"};
  settings.setBrowserVersion("org.chromium.chromium", "131.0");
  keys.isAssistiveAccessGranted.set(true);
  std::vector<std::string> tried;
  world.tasks.onExecute =
      [&](const std::filesystem::path& script) -> platform::Task<testsupport::ModelScriptTasks::Result> {
    const bool isChromium =
        world.files.files.at(script).find("set bundleID to \"org.chromium.chromium\"") != std::string::npos;
    tried.emplace_back(isChromium ? status("org.chromium.chromium") : status("com.google.chrome"));
    EXPECT_FALSE(keys.isAssistiveAccessGranted.get());
    if (!isChromium)
      throw platform::failure(engine::ScriptacularError::unableToWrite);
    using D = platform::AppleEventDescriptor;
    co_return D::list({D::boolean(true), D::string(""), D::string("true")});
  };
  request();
  EXPECT_THAT(tried, ElementsAre("requesting", "requesting"));
  EXPECT_EQ(status("org.chromium.chromium"), "granted");
  EXPECT_EQ(status("com.google.chrome"), "denied");
  EXPECT_FALSE(keys.isAssistiveAccessGranted.get());
  EXPECT_EQ(keys.browserStates.get().at("org.chromium.chromium").version, "131.0");
}

} // namespace
} // namespace tabwright::shell
