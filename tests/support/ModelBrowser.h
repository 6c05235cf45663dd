#pragma once

#include "platform/Mutex.h"
#include "scripting/driver/BrowserDriver.h"

#include <boost/json/value.hpp>

#include <functional>
#include <memory>
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

  /// The answers of pages to JavaScript. Default: null.
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
  std::int64_t perform(const scripting::BrowserCommand& command, const scripting::CallLimits& limits) override;

private:
  scripting::TabID carryOut(const scripting::MakeTab& command) REQUIRES(mutex_);
  scripting::WindowID carryOut(const scripting::MakeWindow& command) REQUIRES(mutex_);
  void carryOut(const scripting::CloseTab& command) REQUIRES(mutex_);
  void carryOut(const scripting::CloseWindow& command) REQUIRES(mutex_);
  void carryOut(const scripting::ActivateTab& command) REQUIRES(mutex_);
  void carryOut(const scripting::RaiseWindow& command) REQUIRES(mutex_);
  void carryOut(const scripting::SetGivenName& command) REQUIRES(mutex_);
  void carryOut(const scripting::Navigate& command) REQUIRES(mutex_);
  void carryOut(const scripting::GoInHistory& command) REQUIRES(mutex_);
  void carryOut(const scripting::Reload& command) REQUIRES(mutex_);
  void carryOut(const scripting::StopLoading& command) REQUIRES(mutex_);
  void carryOut(const scripting::SetBounds& command) REQUIRES(mutex_);
  void carryOut(const scripting::SetShape& command) REQUIRES(mutex_);
  void carryOut(const scripting::Activate& command) REQUIRES(mutex_);
  void carryOut(const scripting::ShowControls&) {}
  std::int64_t carryOut(const scripting::PlayKeys&) { return 0; }
  void carryOut(const scripting::Quit& command) REQUIRES(mutex_);
  void note(std::string command) REQUIRES(mutex_);
  void throwIfFailing() const;
  scripting::WindowState& window(scripting::WindowID id) REQUIRES(mutex_);
  scripting::WindowState& windowOfTab(scripting::TabID id) REQUIRES(mutex_);
  scripting::TabState& tab(scripting::TabID id) REQUIRES(mutex_);
  scripting::TabState newTab(const std::string& title, const std::string& url) REQUIRES(mutex_);

  platform::Mutex mutex_;
  std::vector<scripting::WindowState> windows_ GUARDED_BY(mutex_);
  std::shared_ptr<const scripting::BrowserSnapshot> snapshot_ GUARDED_BY(mutex_);
  std::vector<std::string> commands_ GUARDED_BY(mutex_);
  scripting::WindowID nextWindow_ GUARDED_BY(mutex_) = 101;
  scripting::TabID nextTab_ GUARDED_BY(mutex_) = 1;
};

} // namespace tabwright::testsupport
