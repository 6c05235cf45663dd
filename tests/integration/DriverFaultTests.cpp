#include "devtools/Session.h"
#include "integration/DriverFixture.h"
#include "support/GeneratedJob.h"
#include "support/SteppedDeadlines.h"

#include <fmt/core.h>
#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <future>
#include <map>

namespace tabwright::scripting {

using namespace std::chrono_literals;
using Debugging = support::ChromiumProcess::Debugging;

// Every test here has limits of a minute, and a call without a deadline of its own takes 30 seconds: what is expected
// to fail "at once" would otherwise give timedOut.

TEST_F(DriverTest, ADialogFailsTheCallThatOpensItAndThoseAfterUntilItIsClosed) {
  TABWRIGHT_NEEDS_PORT();
  const TabID tab = open(page("<title>asks</title>"));
  const auto beside = devtools::Session::attach(connect(), pageTitled("asks"), devtools::Session::Kind::page, limits());
  beside->evaluate("1", limits());
  try {
    evaluate(tab, "alert('Sure?')");
    FAIL();
  } catch (const DriverFailure& failure) {
    EXPECT_EQ(failure.kind(), DriverFault::dialogOpen);
    EXPECT_EQ(failure.detail(), "Sure?");
  }
  EXPECT_EQ(faultOf([&] { evaluate(tab, "1"); }), DriverFault::dialogOpen);
  EXPECT_TRUE(find(tab)) << "the rest of the browser still answers";

  // As when the user closes it.
  beside->call("Page.handleJavaScriptDialog", {{"accept", true}}, devtools::Session::AnsweredBy::browser, limits());
  eventually([&] {
    try {
      return evaluate(tab, "document.title") == "asks";
    } catch (const DriverFailure& failure) {
      EXPECT_EQ(failure.kind(), DriverFault::dialogOpen);
      return false;
    }
  });
}

TEST_F(DriverTest, ADialogFromBeforeEndsAtTheDeadline) {
  TABWRIGHT_NEEDS_PORT();
  const TabID tab = open(page("x"));
  EXPECT_EQ(faultOf([&] { evaluate(tab, "confirm('?')"); }), DriverFault::dialogOpen);
  const std::unique_ptr<ChromiumDriver> other = makeDriver(chromium());
  other->snapshot(limits());
  EXPECT_EQ(faultOf([&] { other->evaluate(tab, "1", {std::chrono::steady_clock::now() + 300ms, {}}); }),
            DriverFault::timedOut);
}

TEST_F(DriverTest, WithoutAPortADialogEndsCallsAtTheirDeadline) {
  if (!isHelperRoad())
    GTEST_SKIP() << "a port tells of the dialog at once";
  const TabID tab = open(page("x"));
  for (const char* code : {"confirm('?')", "1"})
    EXPECT_EQ(faultOf([&] { driver().evaluate(tab, code, {std::chrono::steady_clock::now() + 300ms, {}}); }),
              DriverFault::timedOut)
        << code;
  EXPECT_TRUE(find(tab)) << "the rest of the browser still answers";
}

TEST_F(DriverTest, ACrashFailsAtOnceAndReloadingHeals) {
  const TabID tab = open(page("<title>frail</title>"));
  auto waiting =
      std::async(std::launch::async, [&] { return faultOf([&] { evaluate(tab, "new Promise(() => {})"); }); });
  evaluate(tab, "1");
  crash(tab);
  EXPECT_EQ(waiting.get(), DriverFault::tabCrashed);
  EXPECT_EQ(faultOf([&] { evaluate(tab, "1"); }), DriverFault::tabCrashed);
  EXPECT_EQ(faultOf([&] { makeDriver(chromium())->evaluate(tab, "1", limits()); }), DriverFault::tabCrashed)
      << "also for one that comes later";
  driver().perform(Reload{tab}, limits());
  EXPECT_EQ(evaluate(tab, "document.title"), "frail");
}

TEST_F(DriverTest, APageThatIsBusyForEverIsWaitedForABoundedTime) {
  TABWRIGHT_NEEDS_PORT();
  const TabID tab = open(page("<title>idle</title>"));
  const auto time = std::make_shared<testsupport::SteppedDeadlines>();
  const auto begin = [&](const std::string& javascript) {
    return std::async(std::launch::async, [&, javascript] {
      return faultOf([&] { driver().evaluate(tab, javascript, testsupport::SteppedDeadlines::limits(time)); });
    });
  };
  auto planting = begin(testsupport::generatedJob("document.title = 'busy'; for (;;);"));
  const std::unique_ptr<ChromiumDriver> beside = makeDriver(chromium());
  eventually([&] { return find(tab, *beside)->title == "busy"; });
  EXPECT_TRUE(time->pass(10s)) << "code that keeps its page busy";
  EXPECT_EQ(planting.get(), DriverFault::timedOut);

  std::this_thread::sleep_for(150ms); // else it would count as having answered just now
  auto evaluating = begin("1");
  EXPECT_TRUE(time->pass(10s)) << "as long as a page may be on its way";
  EXPECT_TRUE(time->pass(20s)) << "but this one is only busy";
  EXPECT_EQ(evaluating.get(), DriverFault::timedOut);

  auto looking = std::async(std::launch::async,
                            [&] { return driver().snapshot(testsupport::SteppedDeadlines::limits(time)) != nullptr; });
  EXPECT_TRUE(time->pass(3s)) << "a page that another run has visited";
  EXPECT_TRUE(looking.get());
}

TEST_F(DriverTest, APageWhoseServerIsSilentTakesCommands) {
  support::PageServer pages;
  pages.serve("/page", "<title>old</title>");
  pages.neverAnswer("/never");
  const TabID tab = open(pages.url("/page"));
  driver().perform(Navigate{tab, pages.url("/never")}, limits());
  const auto time = std::make_shared<testsupport::SteppedDeadlines>();
  auto reloading = std::async(std::launch::async,
                              [&] { driver().perform(Reload{tab}, testsupport::SteppedDeadlines::limits(time)); });
  time->passUntil([&] { return reloading.wait_for(0s) == std::future_status::ready; }, 10s);
  EXPECT_NO_THROW(reloading.get());
  EXPECT_EQ(evaluate(tab, "document.title"), "old");
}

TEST_F(DriverTest, ClosingATabFailsItsCallsAtOnce) {
  const TabID tab = open(page("x"));
  auto waiting =
      std::async(std::launch::async, [&] { return faultOf([&] { evaluate(tab, "new Promise(() => {})"); }); });
  evaluate(tab, "1");
  driver().perform(CloseTab{tab}, limits());
  // The call may come only when the tab is gone already.
  EXPECT_THAT(waiting.get(), testing::AnyOf(DriverFault::tabClosed, DriverFault::noSuchTab));
  EXPECT_EQ(faultOf([&] { evaluate(tab, "1"); }), DriverFault::noSuchTab);
}

TEST_F(DriverTest, AHelperWhoseWorkerWasStoppedIsWokenAndRemembers) {
  TABWRIGHT_NEEDS_PORT();
  const WindowID window = driver().perform(MakeWindow{WindowMode::normal, "about:blank"}, limits());
  driver().perform(SetGivenName{window, "kept"}, limits());
  const TabID tab = findWindow(window)->tabs.at(0).id;

  for (int round = 0; round < 3; ++round) {
    const auto page =
        devtools::Session::attach(connect(), pageTitled("about:blank"), devtools::Session::Kind::page, limits());
    page->call("ServiceWorker.enable", {}, devtools::Session::AnsweredBy::browser, limits());
    page->call("ServiceWorker.stopAllWorkers", {}, devtools::Session::AnsweredBy::browser, limits());
    EXPECT_EQ(findWindow(window)->givenName, "kept");
    driver().perform(ActivateTab{tab}, limits());
    EXPECT_EQ(makeDriver(chromium())->snapshot(limits())->windows.front().givenName, "kept");
  }
  driver().perform(CloseWindow{window}, limits());
}

TEST_F(DriverTest, ADamagedOrForeignEndpointFileIsNotTrusted) {
  TABWRIGHT_NEEDS_PORT();
  const std::filesystem::path file = chromium().profileDirectory() / "DevToolsActivePort";
  std::ifstream in(file);
  const std::string right{std::istreambuf_iterator<char>(in), {}};
  support::PageServer foreign;
  const std::string foreignPort = foreign.url("").substr(std::string("http://127.0.0.1:").size());
  const std::string path = right.substr(right.find('\n'));

  using enum DriverFault;
  for (const auto& [text, fault] : std::map<std::string, DriverFault>{{"", unreachable},
                                                                      {"garbage", unreachable},
                                                                      {"1" + path, notAccepting},
                                                                      {foreignPort + path, unreachable}}) {
    std::ofstream(file, std::ios::trunc) << text;
    const std::unique_ptr<ChromiumDriver> fresh = makeDriver(chromium());
    EXPECT_TRUE(fresh->isRunning());
    EXPECT_EQ(faultOf([&] { fresh->snapshot(limits()); }), fault) << text;
  }
  std::ofstream(file, std::ios::trunc) << right;
  EXPECT_NO_THROW(makeDriver(chromium())->snapshot(limits()));
}

TEST(BrowserLifetime, AKilledBrowserFailsCallsAtOnceAndTheNextOneIsFound) {
  auto chromium = std::make_unique<support::ChromiumProcess>();
  ChromiumDriverParts parts{support::helperDirectory(), [&] { return chromium->find(); }};
  parts.looksAhead = LooksAhead::no; // what is sent is counted
  ChromiumDriver driver(chromiumFacts(), std::move(parts));
  const TabID tab = driver.snapshot({})->windows.at(0).tabs.at(0).id;
  driver.evaluate(tab, "1", {});
  const std::uint64_t sent = driver.traffic().sent;
  auto waiting = std::async(std::launch::async,
                            [&] { return faultOf([&] { driver.evaluate(tab, "new Promise(() => {})", {}); }); });
  eventually([&] { return driver.traffic().sent > sent; });
  chromium->kill();
  EXPECT_EQ(waiting.get(), DriverFault::lost);
  EXPECT_FALSE(driver.isRunning());
  EXPECT_EQ(faultOf([&] { driver.snapshot({}); }), DriverFault::notRunning);

  chromium = std::make_unique<support::ChromiumProcess>();
  EXPECT_TRUE(driver.isRunning());
  EXPECT_EQ(driver.snapshot({})->windows.size(), 1U);
}

TEST(BrowserLifetime, AFrozenBrowserDoesNothingOfWhatWasGivenUpWhenItGoesOn) {
  const support::ChromiumProcess chromium;
  const std::unique_ptr<ChromiumDriver> driver = makeDriver(chromium);
  const auto soon = [] { return CallLimits{std::chrono::steady_clock::now() + 300ms, {}}; };
  const TabID tab = driver->snapshot({})->windows.at(0).tabs.at(0).id;
  driver->evaluate(tab, "clicks = 0", {});
  std::this_thread::sleep_for(150ms); // else it would count as having answered just now
  ::kill(chromium.process(), SIGSTOP);
  EXPECT_EQ(faultOf([&] { driver->evaluate(tab, "clicks += 1", soon()); }), DriverFault::timedOut);
  EXPECT_EQ(faultOf([&] { driver->perform(CloseTab{tab}, soon()); }), DriverFault::timedOut);
  ::kill(chromium.process(), SIGCONT);
  EXPECT_EQ(driver->evaluate(tab, "clicks", {}), 0);
}

TEST(BrowserLifetime, SeveralProcessesLoadTheHelperAtOnce) {
  const support::ChromiumProcess chromium;
  std::vector<std::future<std::size_t>> looks;
  for (int index = 0; index < 6; ++index) {
    looks.push_back(std::async(std::launch::async, [&] {
      const std::unique_ptr<ChromiumDriver> driver = makeDriver(chromium);
      std::size_t windows = 0;
      for (int round = 0; round < 5; ++round)
        windows += driver->snapshot({})->windows.size();
      return windows;
    }));
  }
  for (std::future<std::size_t>& look : looks)
    EXPECT_EQ(look.get(), 5U);
}

TEST(BrowserLifetime, QuittingWaitsForTheEnd) {
  const support::ChromiumProcess chromium;
  const std::unique_ptr<ChromiumDriver> driver = makeDriver(chromium);
  driver->perform(Quit{}, {});
  EXPECT_FALSE(driver->isRunning());
  EXPECT_TRUE(chromium.find().empty());
}

TEST(BrowserLifetime, OneWithoutRemoteDebuggingSaysHowToSwitchItOn) {
  const support::ChromiumProcess silent(Debugging::off);
  try {
    makeDriver(silent)->snapshot({});
    FAIL();
  } catch (const DriverFailure& failure) {
    EXPECT_EQ(failure.kind(), DriverFault::notAccepting);
    EXPECT_THAT(failure.errorDescription(),
                testing::AllOf(testing::HasSubstr("JavaScript"), testing::HasSubstr("Apple Events"),
                               testing::HasSubstr("chrome://inspect/#remote-debugging"),
                               testing::HasSubstr("tabwright browser chromium")));
  }

  // Another one beside it that accepts is taken instead, whatever the order of their starts.
  const support::ChromiumProcess accepting;
  ChromiumDriver driver(chromiumFacts(), {support::helperDirectory(), [&] {
                                            std::vector<platform::RunningBrowser> both = silent.find();
                                            both.push_back(accepting.find().at(0));
                                            return both;
                                          }});
  EXPECT_EQ(driver.snapshot({})->windows.size(), 1U);
}

} // namespace tabwright::scripting
