#pragma once

#include "devtools/Discovery.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/driver/BrowserCommand.h"
#include "scripting/driver/NativeControls.h"
#include "scripting/driver/PageJobs.h"
#include "scripting/driver/PageSessions.h"
#include "scripting/driver/PageVisits.h"
#include "scripting/driver/SeenBrowser.h"
#include "scripting/driver/TabPages.h"

#include <boost/json/value.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tabwright::scripting {

/// One browser that we are connected to, from the first call to it until it ends: what is seen of it, its pages, and
/// the commands that are carried out on it. Where the browser takes the helper, that is what sees it; else the protocol
/// alone.
///
/// Throws DriverFailure and DevToolsFailure. Safe to use from any thread.
class BrowserLink {
public:
  /// Connects; loads the helper where it isn't there. `browser` is the one that listens at the endpoint,
  /// `helperDirectory` absolute. The limits hold for the whole of it.
  static std::shared_ptr<BrowserLink> open(const platform::RunningBrowser& browser, const devtools::Endpoint& endpoint,
                                           const std::filesystem::path& helperDirectory, LooksAhead looksAhead,
                                           const CallLimits& limits);
  ~BrowserLink();

  /// False once the connection is lost, and for ever then: a new link is needed.
  [[nodiscard]] bool isOpen() const { return connection_->isOpen(); }
  /// As it was found: its process and start tell it from the next browser of the profile.
  [[nodiscard]] const platform::RunningBrowser& browser() const { return browser_; }
  /// For benchmarks.
  [[nodiscard]] devtools::Traffic traffic() const { return connection_->traffic(); }

  /// Like BrowserDriver::snapshot. Pages that other runs have sent elsewhere arrive first, within some seconds.
  std::shared_ptr<const BrowserSnapshot> snapshot(const CallLimits& limits);
  /// When a window of the browser last had the focus, in milliseconds since 1970; see ViewedBrowser. Costs a look.
  double lastFocus(const CallLimits& limits) { return seen_->look({}, limits).lastFocus; }
  /// Like BrowserDriver::evaluate, once the page is where its navigations lead; null when it doesn't come. Code that
  /// plants a page job yields null; questions about a job are answered from its result where that came along.
  boost::json::value evaluate(TabID tab, const std::string& javascript, const CallLimits& limits);
  /// Like BrowserDriver::perform. Commands are given only to a browser that answers: one that is frozen would carry
  /// them out when it goes on, though the caller has given up long before.
  std::int64_t perform(const BrowserCommand& command, const CallLimits& limits);

private:
  using Disturbance = SeenBrowser::Disturbance;

  BrowserLink(platform::RunningBrowser browser, std::shared_ptr<devtools::Connection> connection);
  /// The helper's view where the browser takes the helper; else the protocol's, which guesses at orders. `onChange` is
  /// called from any thread, and only by a view that reports changes.
  std::unique_ptr<BrowserView> makeView(const std::filesystem::path& helperDirectory, std::function<void()> onChange,
                                        const CallLimits& limits);

  /// The begin of a command, on a browser that answers: waits for an answer where there was none lately. `tab` is the
  /// only one that the command changes; nothing where it may change more. The command has ended when the result goes.
  Disturbance begin(const CallLimits& limits, std::optional<TabID> tab = {});
  /// One for each command that isn't the view's alone; BrowserCommand.h says what each of them does and yields. They
  /// return when the change is made.
  TabID carryOut(const MakeTab& command, const CallLimits& limits);
  void carryOut(const CloseWindow& command, const CallLimits& limits);
  void carryOut(const ActivateTab& command, const CallLimits& limits);
  void carryOut(const Navigate& command, const CallLimits& limits);
  void carryOut(const GoInHistory& command, const CallLimits& limits);
  void carryOut(const Reload& command, const CallLimits& limits);
  void carryOut(const StopLoading& command, const CallLimits& limits);
  std::int64_t carryOut(const PlayKeys& command, const CallLimits& limits);
  void carryOut(const SetBounds& command, const CallLimits& limits);
  void carryOut(const SetShape& command, const CallLimits& limits);
  void carryOut(const Activate& command, const CallLimits& limits);
  void carryOut(const ShowControls& /*command*/, const CallLimits& limits) { controls_.show(limits); }
  void carryOut(const Quit& command, const CallLimits& limits);
  /// The commands that are the view's alone.
  template <class Command>
  std::int64_t carryOut(const Command& command, const CallLimits& limits);

  /// Has the page begin with a job. Throws what evaluating throws, except for a crashed page that the job reloads.
  void plant(TabID tab, const PageJob& job, const CallLimits& limits);

  const platform::RunningBrowser browser_;
  std::shared_ptr<devtools::Connection> connection_;
  /// Pages that calls have been about, and what runs have done to them.
  PageSessions pages_;
  PageVisits visits_;
  PageJobResults jobs_;
  NativeControls controls_;
  // Both are set once the browser was found to answer, and come last: they use the rest.
  std::unique_ptr<SeenBrowser> seen_;
  std::unique_ptr<TabPages> tabs_;
};

} // namespace tabwright::scripting
