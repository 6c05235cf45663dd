#pragma once

#include "scripting/driver/BrowserDriver.h"

#include <boost/json/value.hpp>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::testsupport {

/// A browser in memory. Windows and tabs are what a test makes them; pages are played by one function. Counts what
/// costs a round trip in a real browser, and writes down the commands it gets.
///
///     ModelBrowser browser;
///     const auto window = browser.addWindow({{"A", "https://a.test/"}, {"B", "https://b.test/"}});
///     browser.page = [](scripting::TabID, const std::string& js) { return boost::json::value("complete"); };
class ModelBrowser final : public scripting::BrowserDriver {
public:
  struct Page {
    std::string title;
    std::string url;
  };

  /// Adds a window behind the others. Window ids count up from 101, tab ids from 1; the first tab is active. A window
  /// without pages is one of the developer tools.
  scripting::WindowID addWindow(const std::vector<Page>& pages,
                                scripting::WindowMode mode = scripting::WindowMode::normal);

  /// Changes the windows as the user or a page would; the next snapshot shows it.
  void change(const std::function<void(std::vector<scripting::WindowState>&)>& how);
  [[nodiscard]] std::vector<scripting::WindowState> windows();

  /// What pages answer to JavaScript. Default: null.
  std::function<boost::json::value(scripting::TabID, const std::string&)> page;
  /// Thrown by every call, when set.
  std::optional<scripting::DriverFailure> failure;
  bool runs = true;

  /// Commands in order, such as "raise 101", "navigate 2 https://x.test/".
  [[nodiscard]] std::vector<std::string> commands();
  /// Round trips for snapshots; an unchanged browser costs none after the first.
  int snapshotsTaken = 0;
  int snapshotsAsked = 0;
  int evaluations = 0;

  bool isRunning() override { return runs; }
  std::shared_ptr<const scripting::BrowserSnapshot> snapshot(const scripting::CallLimits& limits) override;
  boost::json::value evaluate(scripting::TabID tab, const std::string& javascript,
                              const scripting::CallLimits& limits) override;
  scripting::TabID makeTab(scripting::WindowID window, std::optional<std::size_t> index, const std::string& url,
                           const scripting::CallLimits& limits) override;
  scripting::WindowID makeWindow(scripting::WindowMode mode, const std::string& url,
                                 const scripting::CallLimits& limits) override;
  void closeTab(scripting::TabID tab, const scripting::CallLimits& limits) override;
  void closeWindow(scripting::WindowID window, const scripting::CallLimits& limits) override;
  void activateTab(scripting::TabID tab, const scripting::CallLimits& limits) override;
  void navigate(scripting::TabID tab, const std::string& url, const scripting::CallLimits& limits) override;
  void goInHistory(scripting::TabID tab, History direction, const scripting::CallLimits& limits) override;
  void reload(scripting::TabID tab, const scripting::CallLimits& limits) override;
  void stopLoading(scripting::TabID tab, const scripting::CallLimits& limits) override;
  void raiseWindow(scripting::WindowID window, const scripting::CallLimits& limits) override;
  void setBounds(scripting::WindowID window, scripting::WindowBounds bounds,
                 const scripting::CallLimits& limits) override;
  void setShape(scripting::WindowID window, WindowShape shape, const scripting::CallLimits& limits) override;
  void setGivenName(scripting::WindowID window, const std::string& name, const scripting::CallLimits& limits) override;
  void activate(const scripting::CallLimits& limits) override;
  void quit(const scripting::CallLimits& limits) override;

private:
  void note(std::string command);
  void throwIfFailing() const;
  scripting::WindowState& window(scripting::WindowID id);
  scripting::WindowState& windowOfTab(scripting::TabID id);
  scripting::TabState& tab(scripting::TabID id);
  scripting::TabState newTab(const std::string& title, const std::string& url);

  std::mutex mutex_;
  std::vector<scripting::WindowState> windows_;
  std::shared_ptr<const scripting::BrowserSnapshot> snapshot_;
  std::vector<std::string> commands_;
  scripting::WindowID nextWindow_ = 101;
  scripting::TabID nextTab_ = 1;
};

} // namespace tabwright::testsupport
