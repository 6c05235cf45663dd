#include "devtools/Session.h"
#include "integration/DriverFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace tabwright::scripting {

namespace fs = std::filesystem;

namespace {

std::unique_ptr<ChromiumDriver> makeDriverWith(const support::ChromiumProcess& chromium, const fs::path& helper) {
  return std::make_unique<ChromiumDriver>(chromiumFacts(),
                                          ChromiumDriverParts{helper, [&chromium] { return chromium.find(); }});
}

/// A copy of the helper that claims another version and says so in the names it gives.
fs::path copyHelper(const fs::path& directory, const std::string& version) {
  fs::copy(support::helperDirectory(), directory);
  std::ifstream in(directory / "manifest.json");
  std::string manifest{std::istreambuf_iterator<char>(in), {}};
  const std::string key = "\"version\": \"";
  const std::size_t start = manifest.find(key) + key.size();
  manifest.replace(start, manifest.find('"', start) - start, version);
  std::ofstream(directory / "manifest.json") << manifest;
  return directory;
}

} // namespace

TEST(HelperVersions, AnOlderHelperIsReplacedAndANewerOneIsKept) {
  TABWRIGHT_NEEDS_PORT();
  const support::ChromiumProcess chromium;
  const fs::path newer = copyHelper(chromium.profileDirectory() / "newer", "99.1");
  const fs::path older = copyHelper(chromium.profileDirectory() / "older", "0.9.9");
  const auto version = [&] {
    const auto endpoint = devtools::Discovery().endpoint(chromium.profileDirectory(), chromium.process(), ::geteuid());
    const boost::json::value reply =
        devtools::Connection::open(endpoint.value(), {})->call("Extensions.getExtensions", {}, {}, {});
    return std::string(reply.at("extensions").as_array().at(0).at("version").as_string());
  };

  EXPECT_EQ(makeDriverWith(chromium, older)->snapshot({})->windows.size(), 1U);
  EXPECT_EQ(version(), "0.9.9");
  EXPECT_EQ(makeDriverWith(chromium, newer)->snapshot({})->windows.size(), 1U);
  EXPECT_EQ(version(), "99.1");
  EXPECT_EQ(makeDriver(chromium)->snapshot({})->windows.size(), 1U);
  EXPECT_EQ(version(), "99.1");
}

TEST(WithoutHelper, TheProtocolAloneDoesForTheCommonCommands) {
  TABWRIGHT_NEEDS_PORT();
  const support::ChromiumProcess chromium;
  const std::unique_ptr<ChromiumDriver> driver = makeDriverWith(chromium, "/nonexistent");
  const auto window = [&](WindowID id) -> std::optional<WindowState> {
    const auto snapshot = driver->snapshot({});
    const auto found = std::ranges::find(snapshot->windows, id, &WindowState::id);
    return found != snapshot->windows.end() ? std::optional(*found) : std::nullopt;
  };

  const WindowID first = driver->snapshot({})->windows.at(0).id;
  const TabID blank = window(first)->tabs.at(0).id;
  const TabID tab = driver->perform(MakeTab{first, std::nullopt, "data:text/html,<title>Made</title>"}, {});
  eventually([&] { return window(first)->activeTabIndex == 2 && window(first)->title == "Made"; });
  EXPECT_EQ(driver->evaluate(tab, "document.title", {}), "Made");
  EXPECT_EQ(makeDriverWith(chromium, "/nonexistent")->evaluate(tab, "1 + 1", {}), 2) << "ids hold in other processes";
  driver->perform(ActivateTab{blank}, {});
  eventually([&] { return window(first)->activeTabIndex == 1; });

  const WindowID second = driver->perform(MakeWindow{WindowMode::incognito, "about:blank"}, {});
  EXPECT_EQ(driver->snapshot({})->windows.front().id, second);
  EXPECT_EQ(window(second)->mode, WindowMode::incognito);
  driver->perform(RaiseWindow{first}, {});
  EXPECT_EQ(driver->snapshot({})->windows.front().id, first);
  driver->perform(SetGivenName{second, "mine"}, {});
  EXPECT_EQ(window(second)->givenName, "mine");
  driver->perform(CloseWindow{second}, {});
  EXPECT_FALSE(window(second));

  driver->perform(CloseTab{tab}, {});
  EXPECT_EQ(window(first)->tabs.size(), 1U);
  EXPECT_EQ(faultOf([&] { driver->evaluate(tab, "1", {}); }), DriverFault::noSuchTab);
  EXPECT_EQ(faultOf([&] { driver->perform(RaiseWindow{second}, {}); }), DriverFault::noSuchWindow);
}

TEST_F(DriverTest, AWindowOfDeveloperToolsIsListedWithoutTabsAndCanBeClosed) {
  TABWRIGHT_NEEDS_PORT();
  const TabID tab = open(page("<title>inspected</title>"));
  const auto connection = connect();
  const boost::json::value opened =
      connection->call("Target.openDevTools", {{"targetId", pageTitled("inspected")}}, {}, limits());
  const std::string target(opened.at("targetId").as_string());
  const auto tools = [&]() -> std::optional<WindowState> {
    const auto seen = snapshot();
    for (const WindowState& window : seen->windows) {
      if (window.tabs.empty())
        return window;
    }
    return std::nullopt;
  };
  // Docked, they belong to the inspected window, whose tab is still the inspected page.
  eventually([&] {
    const boost::json::value info = connection->call("Target.getTargetInfo", {{"targetId", target}}, {}, limits());
    return info.at("targetInfo").at("type") == "page";
  });
  EXPECT_EQ(makeDriver(chromium())->evaluate(tab, "document.title", limits()), "inspected");
  EXPECT_FALSE(tools());

  const auto frontEnd = devtools::Session::attach(connection, target, devtools::Session::Kind::page, limits());
  frontEnd->evaluate("InspectorFrontendHost.setIsDocked(false, () => {})", limits());
  eventually([&] { return tools().has_value(); });
  ASSERT_TRUE(tools());
  EXPECT_EQ(tools()->activeTabIndex, 0U);
  eventually([&] { return tools()->title.starts_with("DevTools"); });
  driver().perform(CloseWindow{tools()->id}, limits());
  eventually([&] { return !tools(); });
  EXPECT_TRUE(find(tab));
}

} // namespace tabwright::scripting
