#pragma once

#include "devtools/Targets.h"
#include "scripting/driver/ChromiumDriver.h"
#include "support/ChromiumProcess.h"
#include "support/PageServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <source_location>
#include <string>
#include <thread>
#include <unistd.h>

namespace tabwright::scripting {

inline const platform::BrowserFacts& chromiumFacts() {
  return *platform::findBrowser("chromium");
}

/// A driver of one particular browser process.
inline std::unique_ptr<ChromiumDriver> makeDriver(const support::ChromiumProcess& chromium) {
  return std::make_unique<ChromiumDriver>(
      chromiumFacts(), ChromiumDriverParts{support::helperDirectory(), [&chromium] { return chromium.find(); }});
}

/// True for tests that go by the helper's road, where nothing is reached by the protocol.
inline bool isHelperRoad() {
  return support::ChromiumProcess::road() == support::ChromiumProcess::Road::helper;
}

/// For tests of what only the protocol can do, or tell.
#define TABWRIGHT_NEEDS_PORT()                                                                                         \
  if (isHelperRoad())                                                                                                  \
  GTEST_SKIP() << "only a debugging port does this"

/// The fault of a call that fails; a failed expectation where it doesn't.
inline DriverFault faultOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const DriverFailure& failure) {
    return failure.kind();
  }
  ADD_FAILURE() << "no DriverFailure was thrown";
  return DriverFault::refused;
}

/// Looks again and again until the condition holds; a failed expectation when it doesn't within 20 seconds.
inline void eventually(const std::function<bool()>& condition,
                       std::source_location place = std::source_location::current()) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (std::chrono::steady_clock::now() < deadline) {
    if (condition())
      return;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  ADD_FAILURE_AT(place.file_name(), static_cast<int>(place.line())) << "the condition never held";
}

/// Tests that share one browser; each opens what it needs and closes it again.
class DriverTest : public testing::Test {
protected:
  static support::ChromiumProcess& chromium() {
    static support::ChromiumProcess shared;
    return shared;
  }

  void TearDown() override {
    for (const TabID tab : opened_) {
      try {
        driver().perform(CloseTab{tab}, limits());
      } catch (const DriverFailure&) { // a test may have closed it
      }
    }
  }

  ChromiumDriver& driver() {
    if (!driver_)
      driver_ = makeDriver(chromium());
    return *driver_;
  }

  /// Far enough away that only a hang reaches it.
  static CallLimits limits() { return {std::chrono::steady_clock::now() + std::chrono::seconds(60), {}}; }

  std::shared_ptr<const BrowserSnapshot> snapshot() { return driver().snapshot(limits()); }
  WindowID frontWindow() { return snapshot()->windows.at(0).id; }

  /// The address of a page with this content. Served, since no helper gets into addresses that hold their content.
  static std::string page(const std::string& html) {
    static support::PageServer server;
    static int pages = 0;
    const std::string path = "/" + std::to_string(++pages);
    server.serve(path, html);
    return server.url(path);
  }

  /// A new tab in the front window whose document is there.
  TabID open(const std::string& url) {
    const TabID tab = driver().perform(MakeTab{frontWindow(), std::nullopt, url}, limits());
    opened_.push_back(tab);
    awaitLoaded(tab);
    return tab;
  }

  void awaitLoaded(TabID tab) {
    eventually([&] {
      const std::optional<TabState> state = find(tab);
      return state && !state->isLoading;
    });
  }

  std::optional<TabState> find(TabID tab) { return find(tab, driver()); }
  static std::optional<TabState> find(TabID tab, BrowserDriver& looking) {
    const auto seen = looking.snapshot(limits());
    for (const WindowState& window : seen->windows) {
      for (const TabState& state : window.tabs) {
        if (state.id == tab)
          return state;
      }
    }
    return std::nullopt;
  }

  std::optional<WindowState> findWindow(WindowID id) {
    const auto seen = snapshot();
    for (const WindowState& window : seen->windows) {
      if (window.id == id)
        return window;
    }
    return std::nullopt;
  }

  boost::json::value evaluate(TabID tab, const std::string& javascript) {
    return driver().evaluate(tab, javascript, limits());
  }

  /// A connection of the test's own, beside the driver's.
  static std::shared_ptr<devtools::Connection> connect() {
    const auto endpoint =
        devtools::Discovery().endpoint(chromium().profileDirectory(), chromium().process(), ::geteuid());
    return devtools::Connection::open(endpoint.value(), limits());
  }

  /// The protocol's name of a page with this title.
  static std::string pageTitled(std::string_view title) {
    const auto connection = connect();
    for (const devtools::TargetInfo& target : devtools::listTargets(*connection, {}, limits())) {
      if (target.type == "page" && target.title == title)
        return target.id;
    }
    ADD_FAILURE() << "no page is titled " << title;
    return {};
  }

  /// Ends the process of the tab's page. On the helper's road nothing tells which one that is: all end, and the other
  /// pages are loaded again.
  void crash(TabID tab) {
    if (!isHelperRoad())
      return static_cast<void>(driver().perform(Navigate{tab, "chrome://crash"}, limits()));
    for (const pid_t renderer : chromium().pageProcesses())
      ::kill(renderer, SIGKILL);
    const std::shared_ptr<const BrowserSnapshot> seen = snapshot();
    for (const WindowState& window : seen->windows) {
      for (const TabState& other : window.tabs) {
        if (other.id != tab)
          driver().perform(Reload{other.id}, limits());
      }
    }
  }

private:
  std::unique_ptr<ChromiumDriver> driver_;
  std::vector<TabID> opened_;
};

} // namespace tabwright::scripting
