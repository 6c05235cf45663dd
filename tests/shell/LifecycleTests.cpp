// The life of a process from start to quit, on a clock that the tests move. Both executors run in the test's thread.
#include "shell/Main.h"
#include "shell/Varn.h"
#include "shell/WindowlessApplication.h"
#include "support/LogCapture.h"
#include "support/MemoryUserDefaults.h"
#include "support/ModelApplication.h"
#include "support/SteppedClock.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

namespace tabwright::shell {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

// Notes its calls among those of the application.
struct RecordingController final : UpdateController {
  explicit RecordingController(std::vector<std::string>& record) : events(record) {}
  void startUpdater() override { events.emplace_back("start updater"); }
  void checkForUpdates() override { events.emplace_back("check for updates"); }
  void installUpdate() override { events.emplace_back("install update"); }
  void setPresent(Present) override {}
  std::vector<std::string>& events;
};

struct RecordingSurroundings final : ErrorTracking {
  explicit RecordingSurroundings(std::vector<std::string>& record) : events(record) {}
  void start() override { events.emplace_back("start tracking"); }
  void reportLaunchOfNewRelease() override { events.emplace_back("report launch"); }
  std::vector<std::string>& events;
};

class LifecycleTest : public testing::Test {
protected:
  void makeMain() {
    main.emplace(Main::Surroundings{.application = application,
                                    .defaults = defaults,
                                    .clock = clock,
                                    .mainActor = mainActor.get_executor(),
                                    .background = background.get_executor(),
                                    .errorTracking = &recording,
                                    .makeUpdateController = [this](UpdateControllerDelegate& delegate) {
                                      updateDelegate = &delegate;
                                      return std::make_unique<RecordingController>(application.events);
                                    }});
  }
  void launch(Launch launch) {
    application.hidden = launch == Launch::hidden;
    makeMain();
    application.delegate()->applicationDidFinishLaunching();
    run();
    application.events.clear();
  }
  void run() {
    for (std::size_t work = 1; work != 0;) {
      work = background.poll() + mainActor.poll();
      background.restart();
      mainActor.restart();
    }
  }
  void advance(std::chrono::nanoseconds step) {
    run();
    clock.advance(step);
    run();
  }
  void startAction() { main->shutdown().scheduleShutdown(); }

  testsupport::LogCapture log;
  testsupport::ModelApplication application;
  testsupport::MemoryUserDefaults defaults;
  testsupport::SteppedClock clock;
  RecordingSurroundings recording{application.events};
  UpdateControllerDelegate* updateDelegate = nullptr; // once the controller was made
  boost::asio::io_context background;
  boost::asio::io_context mainActor;
  std::optional<Main> main;
};

TEST_F(LifecycleTest, AProcessOfTheUserNeverQuitsByItself) {
  launch(Launch::byUser);
  for (int action = 0; action < 10; ++action)
    startAction();
  EXPECT_EQ(clock.sleepers(), 0u);
  advance(24h);
  EXPECT_THAT(application.events, IsEmpty());
  EXPECT_EQ(log.linesOf("debug DelayedShutdown: Not started by service/action, no shutdown scheduling").size(), 10u);
  EXPECT_FALSE(log.holds("debug MainDelegate: Launched by action/service"));
}

TEST_F(LifecycleTest, AHiddenProcessWithoutAnActionQuitsAfterItsDelay) {
  launch(Launch::hidden);
  EXPECT_TRUE(log.holds("debug MainDelegate: Launched by action/service"));
  EXPECT_EQ(log.linesOf("debug DelayedShutdown: (Re-)scheduled automatic app shutdown").size(), 1u);
  advance(120s + 99ms);
  EXPECT_THAT(application.events, IsEmpty());
  advance(1ms);
  EXPECT_THAT(application.events, ElementsAre("terminate"));
  advance(1h);
  EXPECT_THAT(application.events, ElementsAre("terminate"));
}

TEST_F(LifecycleTest, EachActionPutsTheQuitOff) {
  launch(Launch::hidden);
  advance(100s);
  startAction();
  run();
  EXPECT_EQ(clock.sleepers(), 1u); // the first timer is gone
  advance(20s + 100ms);            // when it would have fired
  EXPECT_THAT(application.events, IsEmpty());
  advance(99s + 999ms);
  EXPECT_THAT(application.events, IsEmpty());
  advance(1ms);
  EXPECT_THAT(application.events, ElementsAre("terminate")); // at 220.1 s, whatever the action does
}

TEST_F(LifecycleTest, ShowingTheWindowDoesNotKeepAHiddenProcess) {
  application.open("main");
  launch(Launch::hidden);
  application.hidden = false; // the user has opened the window
  Varn::Windows::showMainWindow(application);
  startAction();
  advance(120s + 100ms);
  EXPECT_THAT(application.events, ElementsAre("front main", "terminate"));
}

TEST_F(LifecycleTest, AnActionThatComesAsTheTimeIsUpStillPutsTheQuitOff) {
  launch(Launch::hidden);
  run();
  clock.advance(120s + 100ms); // the sleep has ended, but its thread has not run yet
  startAction();
  run();
  EXPECT_THAT(application.events, IsEmpty());
  advance(120s + 100ms);
  EXPECT_THAT(application.events, ElementsAre("terminate"));
}

TEST_F(LifecycleTest, TheEndComesOnTheMainActor) {
  launch(Launch::hidden);
  startAction();
  run();
  clock.advance(120s + 100ms);
  background.poll();
  background.restart();
  EXPECT_THAT(application.events, IsEmpty()); // the background never touches the application
  run();
  EXPECT_THAT(application.events, ElementsAre("terminate"));
}

TEST_F(LifecycleTest, TheQuitGoesWithItsOwner) {
  launch(Launch::hidden);
  main.reset();
  EXPECT_EQ(application.delegate(), nullptr);
  run();
  EXPECT_EQ(clock.sleepers(), 0u);
  advance(1h);
  EXPECT_THAT(application.events, IsEmpty());
}

TEST_F(LifecycleTest, TimersFromManyThreadsLeaveOneQuit) {
  launch(Launch::hidden);
  {
    auto work = boost::asio::make_work_guard(background);
    std::vector<std::jthread> pool;
    std::vector<std::jthread> actions;
    for (int thread = 0; thread < 2; ++thread)
      pool.emplace_back([this] { background.run(); });
    for (int thread = 0; thread < 4; ++thread) {
      actions.emplace_back([this] {
        for (int action = 0; action < 200; ++action)
          startAction();
      });
    }
    actions.clear();
    work.reset();
    background.stop();
    pool.clear();
    background.restart();
  }
  run();
  EXPECT_EQ(clock.sleepers(), 1u);
  advance(120s + 100ms);
  EXPECT_THAT(application.events, ElementsAre("terminate"));
}

TEST_F(LifecycleTest, StartsInOrder) {
  application.hidden = true;
  application.open("restored");
  application.open("main");
  application.open("");
  makeMain();
  EXPECT_THAT(log.lines(), ElementsAre("info Main: " + Varn::App::identificationLine()));
  EXPECT_THAT(defaults.writes, ElementsAre("6055e27a"));
  application.delegate()->applicationDidFinishLaunching();
  EXPECT_THAT(application.events, ElementsAre("start tracking", "report launch")); // windows are left for later
  EXPECT_THAT(defaults.writes, ElementsAre("6055e27a", "7e52a9f0"));
  EXPECT_EQ(main->keys().firstLaunchTimestamp.get(), 788918400);
  EXPECT_THAT(log.lines(), ElementsAre(testing::_, "debug MainDelegate: Launched by action/service",
                                       "debug DelayedShutdown: (Re-)scheduled automatic app shutdown"));
  run();
  EXPECT_THAT(application.openWindows(), ElementsAre("main"));

  application.events.clear();
  main->mainContentAppeared();
  main->mainContentAppeared();
  EXPECT_THAT(application.events, ElementsAre("tabbing off", "start updater", "tabbing off"));
  application.delegate()->applicationWillTerminate();
  EXPECT_EQ(log.lines().back(), "debug MainDelegate: Shutting down");
}

TEST_F(LifecycleTest, ChecksForUpdatesAndRemembersWhatTheyFound) {
  makeMain();
  EXPECT_EQ(updateDelegate, nullptr); // no controller before it is needed
  AppUpdateManager& manager = main->updateManager();
  manager.checkForUpdatesOnDemand(); // works before any window has appeared
  ASSERT_NE(updateDelegate, nullptr);
  EXPECT_THAT(application.events, ElementsAre("check for updates"));
  EXPECT_EQ(updateDelegate->feedURLStringForUpdater(), Varn::App::updateFeed());
  EXPECT_FALSE(main->appState().isAppUpdateAvailable.value());

  updateDelegate->updaterDidFinishLoadingAppcast();
  updateDelegate->updaterDidFindValidUpdate();
  updateDelegate->updaterDidFinishUpdateCycleForUpdateCheck();
  EXPECT_TRUE(main->appState().isAppUpdateAvailable.value());
  manager.checkForUpdates();
  updateDelegate->updaterDidNotFindUpdate();
  EXPECT_FALSE(main->appState().isAppUpdateAvailable.value());
  EXPECT_THAT(application.events, ElementsAre("check for updates", "check for updates"));
  EXPECT_THAT(log.linesOf("info AppUpdateManager: Checking Appcast on demand").size(), 2u);
  EXPECT_THAT(log.linesOf("debug AppUpdateManager"),
              ElementsAre("debug AppUpdateManager: didFinishLoading", "debug AppUpdateManager: didFindValidUpdate",
                          "debug AppUpdateManager: didFinishUpdateCycleFor",
                          "debug AppUpdateManager: No new version available"));
}

TEST_F(LifecycleTest, WithoutAMainWindowAllWindowsClose) {
  application.open("one");
  application.open("two");
  Varn::Windows::cleanUp(application);
  EXPECT_THAT(application.events, ElementsAre("tabbing off", "close one", "close two"));
  EXPECT_EQ(Varn::Windows::mainWindow(application), nullptr);
  Varn::Windows::showMainWindow(application);
  EXPECT_EQ(application.events.size(), 3u);
}

TEST_F(LifecycleTest, AWindowlessApplicationTellsItsDelegateAndStopsOnce) {
  int stops = 0;
  WindowlessApplication windowless(Launch::hidden, [&] {
    EXPECT_TRUE(log.holds("debug MainDelegate: Shutting down"));
    ++stops;
  });
  main.emplace(Main::Surroundings{.application = windowless,
                                  .defaults = defaults,
                                  .clock = clock,
                                  .mainActor = mainActor.get_executor(),
                                  .background = background.get_executor()});
  windowless.finishLaunching();
  advance(120s + 100ms);
  windowless.terminate();
  EXPECT_EQ(stops, 1);
  EXPECT_EQ(log.linesOf("debug MainDelegate: Shutting down").size(), 1u);
  main.reset();
}

} // namespace
} // namespace tabwright::shell
