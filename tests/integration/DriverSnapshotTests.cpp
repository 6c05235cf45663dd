// Snapshots that are made of the one before and what has changed since.
#include "integration/DriverFixture.h"
#include "support/GeneratedJob.h"

#include <fmt/core.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
#include <iterator>
#include <random>
#include <thread>
#include <vector>

namespace tabwright::scripting {

TEST_F(DriverTest, SeesWhatAPageHasJustMadeOfItself) {
  const TabID tab = open(page("<title>none</title>"));
  int missed = 0;
  for (int round = 0; round < 200; ++round) {
    const std::string title = "round " + std::to_string(round);
    evaluate(tab, "document.title = '" + title + "'");
    missed += find(tab)->title == title ? 0 : 1;
  }
  // The title is on its way while the browser answers: that it is late can't be ruled out, only that it is the rule.
  EXPECT_LT(missed, 10);
}

namespace {

/// A driver whose messages can be counted: it sends nothing by itself.
ChromiumDriver countedDriver(const support::ChromiumProcess& chromium) {
  return {chromiumFacts(),
          {.helperDirectory = support::helperDirectory(),
           .findRunning = [&chromium] { return chromium.find(); },
           .looksAhead = scripting::LooksAhead::no}};
}

} // namespace

TEST_F(DriverTest, CallersWhoAskAtOnceShareALook) {
  ChromiumDriver counted = countedDriver(chromium());
  const TabID tab = open(page("<title>Shared</title>"));
  counted.snapshot(limits());
  // While it runs nothing can be held, so that each caller needs a look.
  std::thread busy([&] { counted.evaluate(tab, "new Promise(resolve => { window.end = resolve })", limits()); });
  eventually([&] { return evaluate(tab, "typeof window.end") == "function"; });
  constexpr std::uint64_t callers = 16;
  eventually([&] {
    const std::uint64_t before = counted.traffic().sent;
    std::barrier start(callers);
    {
      std::vector<std::jthread> threads;
      for (std::uint64_t caller = 0; caller < callers; ++caller)
        threads.emplace_back([&] {
          start.arrive_and_wait();
          counted.snapshot(limits());
        });
    }
    return counted.traffic().sent - before <= callers / 2;
  });
  evaluate(tab, "window.end()");
  busy.join();
}

TEST_F(DriverTest, AProgramWhosePageJobIsDoneNeedsNoLookToEnd) {
  ChromiumDriver counted = countedDriver(chromium());
  const TabID tab = open(page("<title>Job</title>"));
  const auto sentBy = [&](const std::function<void()>& calls) {
    const std::uint64_t before = counted.traffic().sent;
    calls();
    return counted.traffic().sent - before;
  };
  const auto limitsOf = [](const std::stop_source& run) { return CallLimits{limits().deadline, run.get_token()}; };
  eventually([&] {
    const std::stop_source own;
    const std::stop_source other;
    counted.snapshot(limitsOf(own));
    counted.evaluate(tab, testsupport::generatedJob("return 1"), limitsOf(own));
    const std::uint64_t ownLooks = sentBy([&] { counted.snapshot(limitsOf(own)); });
    const std::uint64_t otherLooks = sentBy([&] { counted.snapshot(limitsOf(other)); });
    // The helper may have to be asked first what has become of the page that another run was in.
    return ownLooks == 0 && (otherLooks == 1 || (isHelperRoad() && otherLooks == 2));
  });
}

TEST_F(DriverTest, ChangesOneByOneAddUpToWhatIsThere) {
  const auto texts = [](ChromiumDriver& driver) {
    std::string all;
    const auto seen = driver.snapshot(limits());
    for (const WindowState& window : seen->windows) {
      all += fmt::format("window {} {} {}\n", window.id, window.title, window.activeTabIndex);
      for (const TabState& tab : window.tabs)
        all += fmt::format("  {} {} {} {}\n", tab.id, tab.title, tab.url, tab.isLoading);
    }
    return all;
  };
  support::PageServer pages;
  pages.serve("/a", "<title>A</title>");
  pages.serve("/b", "<title>B</title><iframe src=/a></iframe>");
  std::vector<TabID> tabs;
  for (const char* page : {"/a", "/b", "/a"})
    tabs.push_back(open(pages.url(page)));
  std::minstd_rand random(5);
  // Tabs of our own making, each in front of the one before, and shown by turns.
  const WindowID window = snapshot()->windows.front().id;
  for (int round = 0; round < 40; ++round) {
    if (round % 5 == 0)
      tabs.push_back(driver().perform(MakeTab{window, random() % 3, pages.url("/a")}, limits()));
    if (round % 7 == 0)
      driver().perform(ActivateTab{tabs[random() % tabs.size()]}, limits());
    static constexpr const char* changes[]{"document.title = Math.random()",
                                           "history.pushState({}, '', '?' + Math.random())",
                                           "location.hash = Math.random()",
                                           "location.reload()",
                                           "location.href = location.pathname === '/a' ? '/b' : '/a'",
                                           "window.open('/b')",
                                           "void setTimeout(() => { document.title = 'late' }, 5)"};
    const std::size_t change = random() % std::size(changes);
    evaluate(tabs[random() % tabs.size()], changes[change]);
    if (round % 3 == 0)
      static_cast<void>(snapshot());
    if (round % 8 == 7) {
      eventually([&] { return texts(driver()) == texts(*makeDriver(chromium())); });
    }
  }
  const auto seen = snapshot();
  for (const WindowState& window : seen->windows) {
    for (const TabState& tab : window.tabs) {
      if (tab.url.starts_with(pages.url("/")))
        driver().perform(CloseTab{tab.id}, limits());
    }
  }
}

} // namespace tabwright::scripting
