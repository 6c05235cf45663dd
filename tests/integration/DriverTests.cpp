#include "integration/DriverFixture.h"

#include <gmock/gmock.h>

namespace tabwright::scripting {

using testing::ElementsAre;

namespace {

std::vector<WindowID> windowIDs(const BrowserSnapshot& snapshot) {
  std::vector<WindowID> ids;
  for (const WindowState& window : snapshot.windows)
    ids.push_back(window.id);
  return ids;
}

std::vector<TabID> tabIDs(const WindowState& window) {
  std::vector<TabID> ids;
  for (const TabState& tab : window.tabs)
    ids.push_back(tab.id);
  return ids;
}

} // namespace

TEST_F(DriverTest, TabsStandInStripOrderWithTheActiveOneMarked) {
  const WindowID window = driver().perform(MakeWindow{WindowMode::normal, page("<title>One</title>")}, limits());
  const TabID one = findWindow(window)->tabs.at(0).id;
  const TabID three = driver().perform(MakeTab{window, std::nullopt, page("<title>Three</title>")}, limits());
  const TabID two = driver().perform(MakeTab{window, 1, page("<title>Two</title>")}, limits());
  EXPECT_THAT(tabIDs(*findWindow(window)), ElementsAre(one, two, three));
  EXPECT_EQ(findWindow(window)->activeTabIndex, 2U) << "a new tab becomes the active one";

  driver().perform(ActivateTab{three}, limits());
  EXPECT_EQ(findWindow(window)->activeTabIndex, 3U);
  eventually([&] { return findWindow(window)->title == "Three"; });

  driver().perform(CloseTab{two}, limits());
  EXPECT_THAT(tabIDs(*findWindow(window)), ElementsAre(one, three));
  driver().perform(CloseWindow{window}, limits());
  EXPECT_FALSE(findWindow(window));
}

TEST_F(DriverTest, WindowsStandFrontToBackAndRaisingMovesToTheFront) {
  const WindowID first = driver().perform(MakeWindow{WindowMode::normal, "about:blank"}, limits());
  const WindowID second = driver().perform(MakeWindow{WindowMode::normal, "about:blank"}, limits());
  const WindowID third = driver().perform(MakeWindow{WindowMode::normal, "about:blank"}, limits());
  const auto front = [&] {
    std::vector<WindowID> ids = windowIDs(*snapshot());
    ids.resize(3);
    return ids;
  };
  EXPECT_THAT(front(), ElementsAre(third, second, first));
  driver().perform(RaiseWindow{first}, limits());
  EXPECT_THAT(front(), ElementsAre(first, third, second));

  // Another process of ours sees the same order, since the helper keeps it.
  EXPECT_EQ(windowIDs(*makeDriver(chromium())->snapshot(limits())), windowIDs(*snapshot()));

  driver().perform(Activate{}, limits());
  EXPECT_THAT(front(), ElementsAre(first, third, second));
  for (const WindowID window : {first, second, third})
    driver().perform(CloseWindow{window}, limits());
}

TEST_F(DriverTest, TabsAndWindowsAreClosedOnceTheirPagesHaveLetGo) {
  const WindowID window = driver().perform(MakeWindow{WindowMode::normal, "about:blank"}, limits());
  for (const bool closesWindow : {false, true}) {
    const TabID tab = driver().perform(MakeTab{window, std::nullopt, page("<title>Slow</title>")}, limits());
    awaitLoaded(tab);
    evaluate(tab,
             "addEventListener('beforeunload', () => { const end = Date.now() + 300; while (Date.now() < end); })");
    if (closesWindow)
      driver().perform(CloseWindow{window}, limits());
    else
      driver().perform(CloseTab{tab}, limits());
    EXPECT_FALSE(find(tab));
  }
  EXPECT_FALSE(findWindow(window));
}

TEST_F(DriverTest, IncognitoWindowsAreSeenAndTheirTabsAnswer) {
  const WindowID window = driver().perform(MakeWindow{WindowMode::incognito, page("<title>Private</title>")}, limits());
  const WindowState state = *findWindow(window);
  EXPECT_EQ(state.mode, WindowMode::incognito);
  ASSERT_EQ(state.tabs.size(), 1U);
  EXPECT_EQ(snapshot()->windows.front().id, window);
  awaitLoaded(state.tabs[0].id);
  EXPECT_EQ(evaluate(state.tabs[0].id, "document.title"), "Private");
  driver().perform(CloseWindow{window}, limits());
  const auto seen = snapshot();
  for (const WindowState& other : seen->windows)
    EXPECT_EQ(other.mode, WindowMode::normal);
}

TEST_F(DriverTest, NavigationShowsInTheNextSnapshotAndTheHistoryLeadsBack) {
  support::PageServer server;
  server.serve("/a", "<title>A</title>");
  server.serve("/b", "<title>B</title>");
  const TabID tab = open(server.url("/a"));
  eventually([&] { return find(tab)->title == "A"; });

  driver().perform(Navigate{tab, server.url("/b")}, limits());
  EXPECT_EQ(find(tab)->url, server.url("/b"));
  eventually([&] { return find(tab)->title == "B"; });

  driver().perform(GoInHistory{tab, History::back}, limits());
  eventually([&] { return find(tab)->title == "A"; });
  driver().perform(GoInHistory{tab, History::forward}, limits());
  eventually([&] { return find(tab)->title == "B"; });
  EXPECT_NO_THROW(driver().perform(GoInHistory{tab, History::forward}, limits())) << "nothing further is no fault";

  awaitLoaded(tab);
  evaluate(tab, "window.mark = 1");
  driver().perform(Reload{tab}, limits());
  eventually([&] { return evaluate(tab, "window.mark === undefined") == true; });
}

TEST_F(DriverTest, APageThatCannotBeLoadedShowsItsAddressAllTheWay) {
  const TabID tab = open(page("<title>Here</title>"));
  const std::string blocked = "http://127.0.0.1:1/";
  const std::stop_source run; // one and the same: it doesn't wait for where it has sent the page
  const CallLimits own{limits().deadline, run.get_token()};
  driver().perform(Navigate{tab, blocked}, own);
  eventually([&] {
    const auto seen = driver().snapshot(own);
    const TabState& state = seen->windows.front().tabs.at(seen->windows.front().activeTabIndex - 1);
    EXPECT_EQ(state.url, blocked);
    return !state.isLoading;
  });
}

TEST_F(DriverTest, APageThatNeverArrivesIsLoadingUntilStopped) {
  support::PageServer server;
  server.neverAnswer("/slow");
  const TabID tab = open(page("<title>Here</title>"));
  driver().perform(Navigate{tab, server.url("/slow")}, limits());
  EXPECT_EQ(find(tab)->url, server.url("/slow"));
  EXPECT_TRUE(find(tab)->isLoading);
  if (isHelperRoad()) { // which stops only what the page has asked for itself
    EXPECT_EQ(faultOf([&] { driver().perform(StopLoading{tab}, limits()); }), DriverFault::refused);
    return;
  }
  driver().perform(StopLoading{tab}, limits());
  eventually([&] { return !find(tab)->isLoading; });
  EXPECT_EQ(evaluate(tab, "document.title"), "Here");
}

TEST_F(DriverTest, AddressesThatAreNoneAreRefusedAndJavaScriptOnesRun) {
  const TabID tab = open(page("<title>Old</title>"));
  EXPECT_EQ(faultOf([&] { driver().perform(Navigate{tab, "no address"}, limits()); }), DriverFault::refused);
  EXPECT_EQ(faultOf([&] { driver().perform(MakeTab{frontWindow(), {}, "page.html"}, limits()); }),
            DriverFault::refused);
  driver().perform(Navigate{tab, "JavaScript:void(document.title='New')"}, limits());
  eventually([&] { return evaluate(tab, "document.title") == "New"; });
}

TEST_F(DriverTest, BoundsAndShapeOfAWindowCanBeSet) {
  const WindowID window = driver().perform(MakeWindow{WindowMode::normal, "about:blank"}, limits());
  const WindowBounds bounds{40, 30, 640, 480};
  driver().perform(SetShape{window, WindowShape::fullScreen}, limits());
  EXPECT_TRUE(findWindow(window)->isFullScreen);
  driver().perform(SetShape{window, WindowShape::minimized}, limits());
  EXPECT_TRUE(findWindow(window)->isMinimized);
  driver().perform(SetBounds{window, bounds}, limits());
  EXPECT_EQ(findWindow(window)->bounds, bounds);
  EXPECT_FALSE(findWindow(window)->isMinimized);
  driver().perform(CloseWindow{window}, limits());
  EXPECT_EQ(faultOf([&] { driver().perform(SetBounds{window, bounds}, limits()); }), DriverFault::noSuchWindow);
}

TEST_F(DriverTest, GivenNamesLastAcrossConnections) {
  const WindowID window = driver().perform(MakeWindow{WindowMode::normal, "about:blank"}, limits());
  driver().perform(SetGivenName{window, "Über “uns”\n"}, limits());
  EXPECT_EQ(findWindow(window)->givenName, "Über “uns”\n");

  const std::unique_ptr<ChromiumDriver> other = makeDriver(chromium());
  EXPECT_EQ(other->snapshot(limits())->windows.front().givenName, "Über “uns”\n");
  other->perform(SetGivenName{window, ""}, limits());
  eventually([&] { return findWindow(window)->givenName.empty(); }); // the change of another process is reported
  driver().perform(CloseWindow{window}, limits());
}

TEST_F(DriverTest, ASnapshotIsHeldUntilTheBrowserReportsAChange) {
  const TabID tab = open(page("<title>Quiet</title>"));
  eventually([&] {
    const std::uint64_t before = driver().traffic().sent;
    snapshot();
    snapshot();
    return driver().traffic().sent == before;
  });
  const std::unique_ptr<ChromiumDriver> other = makeDriver(chromium());
  other->perform(CloseTab{tab}, limits());
  eventually([&] { return !find(tab); });
}

TEST_F(DriverTest, ALookAheadSparesTheNextCallItsOwn) {
  const TabID tab = open(page("<title>Ahead</title>"));
  eventually([&] {
    evaluate(tab, "document.title += '!'");
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const std::uint64_t before = driver().traffic().sent;
    const std::string title = find(tab)->title;
    return driver().traffic().sent == before && evaluate(tab, "document.title") == title.c_str();
  });
}

TEST_F(DriverTest, WhatDoesNotExistIsNamed) {
  constexpr TabID none = 987654321;
  EXPECT_EQ(faultOf([&] { evaluate(none, "1"); }), DriverFault::noSuchTab);
  EXPECT_EQ(faultOf([&] { driver().perform(Reload{none}, limits()); }), DriverFault::noSuchTab);
  EXPECT_EQ(faultOf([&] { driver().perform(GoInHistory{none, History::back}, limits()); }), DriverFault::noSuchTab);
  EXPECT_EQ(faultOf([&] { driver().perform(MakeTab{none, {}, ""}, limits()); }), DriverFault::noSuchWindow);
  EXPECT_EQ(faultOf([&] { driver().perform(CloseWindow{none}, limits()); }), DriverFault::noSuchWindow);
  EXPECT_EQ(faultOf([&] { driver().perform(SetGivenName{none, "x"}, limits()); }), DriverFault::noSuchWindow);
  try {
    driver().perform(CloseTab{none}, limits());
    FAIL();
  } catch (const DriverFailure& failure) {
    EXPECT_EQ(failure.errorDescription(), "There is no tab with the id 987654321.");
  }
}

TEST_F(DriverTest, AServerThatNeverAnswersDoesNotHoldEvaluationsForEver) {
  support::PageServer pages;
  pages.neverAnswer("/never");
  const TabID tab = driver().perform(MakeTab{frontWindow(), std::nullopt, pages.url("/never")}, limits());
  EXPECT_EQ(faultOf([&] {
              driver().evaluate(tab, "1", {std::chrono::steady_clock::now() + std::chrono::milliseconds(200), {}});
            }),
            DriverFault::timedOut);
  driver().perform(Navigate{tab, page("<title>other</title>")}, limits());
  EXPECT_EQ(evaluate(tab, "document.title"), "other");
  driver().perform(CloseTab{tab}, limits());
}

TEST_F(DriverTest, FollowsTheUserToAnotherBrowserAfterAPauseOrInTheNextRunOnly) {
  const support::ChromiumProcess other;
  std::vector<platform::RunningBrowser> order;
  const auto prefer = [&](const support::ChromiumProcess& first, const support::ChromiumProcess& second) {
    order = first.find();
    for (const platform::RunningBrowser& browser : second.find())
      order.push_back(browser);
  };
  const auto driverWith = [&](std::chrono::nanoseconds pause) {
    return std::make_unique<ChromiumDriver>(chromiumFacts(),
                                            ChromiumDriverParts{.helperDirectory = support::helperDirectory(),
                                                                .findRunning = [&order] { return order; },
                                                                .pauseBetweenRuns = pause});
  };
  const auto patient = driverWith(std::chrono::hours(1));
  const auto keen = driverWith(std::chrono::nanoseconds(0));
  // Windows of two browsers may have the same number, so a mark in the page tells them apart.
  const auto markOf = [](ChromiumDriver& driver, const std::shared_ptr<platform::Notices>& run = nullptr) {
    CallLimits ofRun = limits();
    ofRun.notices = run;
    const TabID tab = driver.snapshot(ofRun)->windows.at(0).tabs.at(0).id;
    return driver.evaluate(tab, "window.mark = window.mark || performance.timeOrigin + Math.random()", ofRun);
  };
  prefer(chromium(), other);
  const boost::json::value here = markOf(*patient);
  EXPECT_EQ(markOf(*keen), here);
  const auto run = std::make_shared<platform::Notices>(), next = std::make_shared<platform::Notices>();
  EXPECT_EQ(markOf(*patient, run), here);
  prefer(other, chromium());
  EXPECT_NE(markOf(*keen), here);
  EXPECT_EQ(markOf(*patient), here);
  EXPECT_NE(markOf(*patient, next), here);
  EXPECT_EQ(markOf(*patient, run), here) << "a run stays where it began";
  prefer(chromium(), other);
  EXPECT_EQ(markOf(*keen), here);
  order.clear(); // what can't be found is no reason to let go
  EXPECT_EQ(markOf(*keen), here);
}

} // namespace tabwright::scripting
