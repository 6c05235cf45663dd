#include "scripting/systemevents/DesktopProcesses.h"
#include "scripting/systemevents/RecentBrowsers.h"
#include "support/ModelDesktop.h"
#include "support/ProcessTree.h"

#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace tabwright;
using platform::ClientWindow;
using platform::RunningBrowser;
using testing::ElementsAre;

enum class Shown { yes, active, no, elsewhere };

ClientWindow window(pid_t pid, const std::string& name, Shown shown = Shown::yes, const std::string& windowClass = "") {
  ClientWindow window;
  window.id = static_cast<std::uint32_t>(pid * 100);
  window.pid = pid;
  window.name = name;
  window.windowClass = windowClass;
  window.isShown = shown != Shown::no;
  window.isHere = shown != Shown::elsewhere;
  window.isActive = shown == Shown::active;
  return window;
}

RunningBrowser browser(const char* name, pid_t process, pid_t innerProcess = 0) {
  RunningBrowser browser;
  browser.facts = platform::findBrowser(name);
  browser.process = process;
  browser.innerProcess = innerProcess != 0 ? innerProcess : process;
  return browser;
}

/// Each process in one word: name, pid, "!" when frontmost, "-" when not visible, and the names of its windows.
std::vector<std::string> told(const std::vector<ClientWindow>& windows, const std::vector<RunningBrowser>& browsers) {
  const auto programOf = [](pid_t pid) {
    return std::filesystem::path(pid == 10 ? "/usr/bin/editor" : pid == 90 ? "/opt/google/chrome/chrome" : "");
  };
  std::vector<std::string> result;
  for (const scripting::DesktopProcess& process : scripting::desktopProcesses(windows, browsers, {programOf})) {
    std::string text = fmt::format("{}{}{}{}", process.name, process.pid, process.isFrontmost ? "!" : "",
                                   process.isVisible ? "" : "-");
    for (const scripting::DesktopWindow& each : process.windows)
      text += " " + each.name;
    result.push_back(text);
  }
  return result;
}

TEST(DesktopProcesses, GatherTheirWindowsInOrder) {
  EXPECT_THAT(told({window(20, "a"), window(10, "b", Shown::active), window(20, "c", Shown::no), window(0, "lost"),
                    window(30, "d", Shown::no), window(90, "e")},
                   {browser("vivaldi", 40), browser("chromium", 20)}),
              ElementsAre("editor10! b", "Chromium20 a c", "Google Chrome90 e", "30- d", "Vivaldi40-"));
  const auto all = scripting::desktopProcesses({window(20, "a")}, {browser("edge", 20)}, {[](pid_t) { return ""; }});
  EXPECT_EQ(all.at(0).bundleIdentifier, "com.microsoft.edgemac");
  EXPECT_FALSE(all.at(0).isHeadless);
  RunningBrowser headless = browser("chromium", 20);
  headless.isHeadless = true;
  EXPECT_TRUE(scripting::desktopProcesses({}, {headless}, {}).at(0).isHeadless);
}

TEST(DesktopProcesses, OneIsFrontmostEvenWhereNoWindowIsActive) {
  const std::vector<RunningBrowser> browsers{browser("vivaldi", 40), browser("chromium", 20)};
  EXPECT_THAT(told({window(30, "a", Shown::no), window(10, "b"), window(20, "c")}, browsers),
              ElementsAre("editor10! b", "Chromium20 c", "30- a", "Vivaldi40-"));
  EXPECT_THAT(told({window(10, "a", Shown::no), window(20, "b", Shown::no)}, browsers),
              ElementsAre("Chromium20!- b", "editor10- a", "Vivaldi40-"))
      << "with all hidden, the browser used last";
  EXPECT_THAT(told({window(10, "a", Shown::elsewhere), window(20, "b", Shown::no)}, browsers),
              ElementsAre("Chromium20!- b", "editor10 a", "Vivaldi40-"))
      << "on an empty workspace too";
  EXPECT_THAT(told({}, browsers), ElementsAre("Vivaldi40!-", "Chromium20-")) << "without windows, the one started last";
  EXPECT_THAT(told({window(10, "a", Shown::no)}, {}), ElementsAre("editor10- a"));
  EXPECT_THAT(told({}, {}), ElementsAre());
}

TEST(DesktopProcesses, DialogsAreOfTheirOwnProcessAndNeverOfThemselves) {
  std::vector<ClientWindow> windows{window(10, "main"),  window(10, "dialog"),    window(10, "lost"),
                                    window(10, "round"), window(10, "and round"), window(20, "other")};
  for (std::size_t each = 0; each < windows.size(); ++each)
    windows[each].id = static_cast<std::uint32_t>(each + 1);
  windows[1].dialogOf = 1;
  windows[2].dialogOf = 6;
  windows[3].dialogOf = 5;
  windows[4].dialogOf = 4;
  const auto processes = scripting::desktopProcesses(windows, {}, {[](pid_t) { return "/usr/bin/editor"; }});
  std::vector<std::uint32_t> owners;
  for (const scripting::DesktopWindow& each : processes.at(0).windows)
    owners.push_back(each.dialogOf);
  EXPECT_THAT(owners, ElementsAre(0, 1, 0, 0, 4)) << "of two that wait for each other, one does";
}

TEST(DesktopProcesses, ASandboxedBrowsersWindowsTellItsInnerNumber) {
  const std::vector<RunningBrowser> browsers{browser("chromium", 2000, 10)};
  EXPECT_THAT(told({window(10, "page", Shown::active, "chromium"), window(10, "text", Shown::yes, "Editor")}, browsers),
              ElementsAre("Chromium2000! page", "editor10 text"));
}

TEST(RecentBrowsers, TheLastFocusedComesFirstThenTheLastStarted) {
  support::ProcessTree tree;
  const auto add = [&](pid_t process, unsigned long start, const std::string& option) {
    tree.addProcess(process, "/usr/lib/chromium/chromium", {"chromium", "--user-data-dir=/p", option}, start);
  };
  add(10, 50, "--headless=new");
  add(20, 10, "--in-a-window");
  add(30, 20, "--in-a-window");
  add(40, 40, "--on-another-display");
  add(50, 60, "--headless=new");
  add(60, 45, "--on-another-display");
  tree.addProcess(70, "/opt/google/chrome/chrome", {"chrome"}, 60);
  const auto desktop = std::make_shared<testsupport::ModelDesktop>();
  const scripting::RecentBrowsers browsers(desktop, platform::RunningBrowsers(tree.root()));
  const auto order = [&] {
    std::vector<std::string> numbers;
    for (const RunningBrowser& each : browsers.find(*platform::findBrowser("chromium")))
      numbers.push_back(fmt::format("{}{}", each.process, each.isPlacedByWindows ? " placed" : ""));
    return numbers;
  };
  EXPECT_THAT(order(), ElementsAre("60", "40", "30", "20", "50", "10"))
      << "without windows, by start, headless ones last";
  desktop->add(7, "Editor", "org.editor", {"text"});
  desktop->add(20, "Chromium", "org.chromium.chromium", {"page"});
  desktop->add(10, "Chromium", "org.chromium.chromium");
  desktop->add(30, "Chromium", "org.chromium.chromium", {"page"});
  EXPECT_THAT(order(), ElementsAre("20 placed", "30 placed", "60", "40", "50", "10"));
  desktop->activate(30);
  EXPECT_THAT(order(), ElementsAre("30 placed", "20 placed", "60", "40", "50", "10"));
}

} // namespace
