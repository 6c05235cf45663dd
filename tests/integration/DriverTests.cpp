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
  const WindowID window = driver().makeWindow(WindowMode::normal, "data:text/html,<title>One</title>", limits());
  const TabID one = findWindow(window)->tabs.at(0).id;
  const TabID three = driver().makeTab(window, std::nullopt, "data:text/html,<title>Three</title>", limits());
  const TabID two = driver().makeTab(window, 1, "data:text/html,<title>Two</title>", limits());
  EXPECT_THAT(tabIDs(*findWindow(window)), ElementsAre(one, two, three));
  EXPECT_EQ(findWindow(window)->activeTabIndex, 2U) << "a new tab becomes the active one";

  driver().activateTab(three, limits());
  EXPECT_EQ(findWindow(window)->activeTabIndex, 3U);
  eventually([&] { return findWindow(window)->title == "Three"; });

  driver().closeTab(two, limits());
  EXPECT_THAT(tabIDs(*findWindow(window)), ElementsAre(one, three));
  driver().closeWindow(window, limits());
  EXPECT_FALSE(findWindow(window));
}

TEST_F(DriverTest, WindowsStandFrontToBackAndRaisingMovesToTheFront) {
  const WindowID first = driver().makeWindow(WindowMode::normal, "about:blank", limits());
  const WindowID second = driver().makeWindow(WindowMode::normal, "about:blank", limits());
  const WindowID third = driver().makeWindow(WindowMode::normal, "about:blank", limits());
  const auto front = [&] {
    std::vector<WindowID> ids = windowIDs(*snapshot());
    ids.resize(3);
    return ids;
  };
  EXPECT_THAT(front(), ElementsAre(third, second, first));
  driver().raiseWindow(first, limits());
  EXPECT_THAT(front(), ElementsAre(first, third, second));

  // Another process of ours sees the same order, since the helper keeps it.
  EXPECT_EQ(windowIDs(*makeDriver(chromium())->snapshot(limits())), windowIDs(*snapshot()));

  driver().activate(limits());
  EXPECT_THAT(front(), ElementsAre(first, third, second));
  for (const WindowID window : {first, second, third})
    driver().closeWindow(window, limits());
}

TEST_F(DriverTest, TabsAndWindowsAreClosedOnceTheirPagesHaveLetGo) {
  const WindowID window = driver().makeWindow(WindowMode::normal, "about:blank", limits());
  for (const bool closesWindow : {false, true}) {
    const TabID tab = driver().makeTab(window, std::nullopt, "data:text/html,<title>Slow</title>", limits());
    awaitLoaded(tab);
    evaluate(tab,
             "addEventListener('beforeunload', () => { const end = Date.now() + 300; while (Date.now() < end); })");
    if (closesWindow)
      driver().closeWindow(window, limits());
    else
      driver().closeTab(tab, limits());
    EXPECT_FALSE(find(tab));
  }
  EXPECT_FALSE(findWindow(window));
}

TEST_F(DriverTest, IncognitoWindowsAreSeenAndTheirTabsAnswer) {
  const WindowID window = driver().makeWindow(WindowMode::incognito, "data:text/html,<title>Private</title>", limits());
  const WindowState state = *findWindow(window);
  EXPECT_EQ(state.mode, WindowMode::incognito);
  ASSERT_EQ(state.tabs.size(), 1U);
  EXPECT_EQ(snapshot()->windows.front().id, window);
  awaitLoaded(state.tabs[0].id);
  EXPECT_EQ(evaluate(state.tabs[0].id, "document.title"), "Private");
  driver().closeWindow(window, limits());
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

  driver().navigate(tab, server.url("/b"), limits());
  EXPECT_EQ(find(tab)->url, server.url("/b"));
  eventually([&] { return find(tab)->title == "B"; });

  driver().goInHistory(tab, BrowserDriver::History::back, limits());
  eventually([&] { return find(tab)->title == "A"; });
  driver().goInHistory(tab, BrowserDriver::History::forward, limits());
  eventually([&] { return find(tab)->title == "B"; });
  EXPECT_NO_THROW(driver().goInHistory(tab, BrowserDriver::History::forward, limits()))
      << "nothing further is no fault";

  awaitLoaded(tab);
  evaluate(tab, "window.mark = 1");
  driver().reload(tab, limits());
  eventually([&] { return evaluate(tab, "window.mark === undefined") == true; });
}

TEST_F(DriverTest, APageThatCannotBeLoadedShowsItsAddressAllTheWay) {
  const TabID tab = open("data:text/html,<title>Here</title>");
  const std::string blocked = "http://127.0.0.1:1/";
  const std::stop_source run; // one and the same: it doesn't wait for where it has sent the page
  const CallLimits own{limits().deadline, run.get_token()};
  driver().navigate(tab, blocked, own);
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
  const TabID tab = open("data:text/html,<title>Here</title>");
  driver().navigate(tab, server.url("/slow"), limits());
  EXPECT_EQ(find(tab)->url, server.url("/slow"));
  EXPECT_TRUE(find(tab)->isLoading);
  driver().stopLoading(tab, limits());
  eventually([&] { return !find(tab)->isLoading; });
  EXPECT_EQ(evaluate(tab, "document.title"), "Here");
}

TEST_F(DriverTest, AddressesThatAreNoneAreRefusedAndJavaScriptOnesRun) {
  const TabID tab = open("data:text/html,<title>Old</title>");
  EXPECT_EQ(faultOf([&] { driver().navigate(tab, "no address", limits()); }), DriverFault::refused);
  EXPECT_EQ(faultOf([&] { driver().makeTab(frontWindow(), {}, "page.html", limits()); }), DriverFault::refused);
  driver().navigate(tab, "JavaScript:void(document.title='New')", limits());
  eventually([&] { return evaluate(tab, "document.title") == "New"; });
}

TEST_F(DriverTest, BoundsAndShapeOfAWindowCanBeSet) {
  const WindowID window = driver().makeWindow(WindowMode::normal, "about:blank", limits());
  const WindowBounds bounds{40, 30, 640, 480};
  driver().setShape(window, BrowserDriver::WindowShape::fullScreen, limits());
  EXPECT_TRUE(findWindow(window)->isFullScreen);
  driver().setShape(window, BrowserDriver::WindowShape::minimized, limits());
  EXPECT_TRUE(findWindow(window)->isMinimized);
  driver().setBounds(window, bounds, limits());
  EXPECT_EQ(findWindow(window)->bounds, bounds);
  EXPECT_FALSE(findWindow(window)->isMinimized);
  driver().closeWindow(window, limits());
  EXPECT_EQ(faultOf([&] { driver().setBounds(window, bounds, limits()); }), DriverFault::noSuchWindow);
}

TEST_F(DriverTest, GivenNamesLastAcrossConnections) {
  const WindowID window = driver().makeWindow(WindowMode::normal, "about:blank", limits());
  driver().setGivenName(window, "Über “uns”\n", limits());
  EXPECT_EQ(findWindow(window)->givenName, "Über “uns”\n");

  const std::unique_ptr<DevToolsDriver> other = makeDriver(chromium());
  EXPECT_EQ(other->snapshot(limits())->windows.front().givenName, "Über “uns”\n");
  other->setGivenName(window, "", limits());
  eventually([&] { return findWindow(window)->givenName.empty(); }); // the change of another process is reported
  driver().closeWindow(window, limits());
}

TEST_F(DriverTest, ASnapshotIsHeldUntilTheBrowserReportsAChange) {
  const TabID tab = open("data:text/html,<title>Quiet</title>");
  eventually([&] {
    const std::uint64_t before = driver().traffic().sent;
    snapshot();
    snapshot();
    return driver().traffic().sent == before;
  });
  const std::unique_ptr<DevToolsDriver> other = makeDriver(chromium());
  other->closeTab(tab, limits());
  eventually([&] { return !find(tab); });
}

TEST_F(DriverTest, ALookAheadSparesTheNextCallItsOwn) {
  const TabID tab = open("data:text/html,<title>Ahead</title>");
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
  EXPECT_EQ(faultOf([&] { driver().reload(none, limits()); }), DriverFault::noSuchTab);
  EXPECT_EQ(faultOf([&] { driver().goInHistory(none, BrowserDriver::History::back, limits()); }),
            DriverFault::noSuchTab);
  EXPECT_EQ(faultOf([&] { driver().makeTab(none, {}, "", limits()); }), DriverFault::noSuchWindow);
  EXPECT_EQ(faultOf([&] { driver().closeWindow(none, limits()); }), DriverFault::noSuchWindow);
  EXPECT_EQ(faultOf([&] { driver().setGivenName(none, "x", limits()); }), DriverFault::noSuchWindow);
  try {
    driver().closeTab(none, limits());
    FAIL();
  } catch (const DriverFailure& failure) {
    EXPECT_EQ(failure.errorDescription(), "There is no tab with the id 987654321.");
  }
}

TEST_F(DriverTest, AServerThatNeverAnswersDoesNotHoldEvaluationsForEver) {
  support::PageServer pages;
  pages.neverAnswer("/never");
  const TabID tab = driver().makeTab(frontWindow(), std::nullopt, pages.url("/never"), limits());
  EXPECT_EQ(faultOf([&] {
              driver().evaluate(tab, "1", {std::chrono::steady_clock::now() + std::chrono::milliseconds(200), {}});
            }),
            DriverFault::timedOut);
  driver().navigate(tab, "data:text/html,<title>other</title>", limits());
  EXPECT_EQ(evaluate(tab, "location.protocol"), "data:");
  driver().closeTab(tab, limits());
}

TEST_F(DriverTest, FollowsTheUserToAnotherBrowserAfterAPauseOnly) {
  const support::ChromiumProcess other;
  std::vector<platform::RunningBrowser> order;
  const auto prefer = [&](const support::ChromiumProcess& first, const support::ChromiumProcess& second) {
    order = first.find();
    for (const platform::RunningBrowser& browser : second.find())
      order.push_back(browser);
  };
  const auto driverWith = [&](std::chrono::nanoseconds pause) {
    return std::make_unique<DevToolsDriver>(chromiumFacts(),
                                            DevToolsDriverParts{.helperDirectory = support::helperDirectory(),
                                                                .findRunning = [&order] { return order; },
                                                                .pauseBetweenRuns = pause});
  };
  const auto patient = driverWith(std::chrono::hours(1));
  const auto keen = driverWith(std::chrono::nanoseconds(0));
  // Windows of two browsers may have the same number, so a mark in the page tells them apart.
  const auto markOf = [](DevToolsDriver& driver) {
    const TabID tab = driver.snapshot(limits())->windows.at(0).tabs.at(0).id;
    return driver.evaluate(tab, "window.mark = window.mark || performance.timeOrigin + Math.random()", limits());
  };
  prefer(chromium(), other);
  const boost::json::value here = markOf(*patient);
  EXPECT_EQ(markOf(*keen), here);
  prefer(other, chromium());
  EXPECT_NE(markOf(*keen), here);
  EXPECT_EQ(markOf(*patient), here);
  prefer(chromium(), other);
  EXPECT_EQ(markOf(*keen), here);
  order.clear(); // what can't be found is no reason to let go
  EXPECT_EQ(markOf(*keen), here);
}

} // namespace tabwright::scripting
