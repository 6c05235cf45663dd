#pragma once

#include "platform/linux/RunningBrowsers.h"
#include "scripting/driver/BrowserCommand.h"
#include "scripting/driver/BrowserRoad.h"
#include "scripting/driver/PageJobs.h"
#include "scripting/driver/SeenBrowser.h"

#include <boost/json/value.hpp>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tabwright::scripting {

/// One browser that we are connected to, from the first call to it until it ends: what is seen of it, the jobs in its
/// pages, and the commands that are carried out on it, by whichever road it is reached.
///
/// Throws DriverFailure and DevToolsFailure. Safe to use from any thread.
class BrowserLink {
public:
  /// Looks at the browser's windows and tabs for the first time. The limits hold for the whole of it.
  BrowserLink(platform::RunningBrowser browser, std::unique_ptr<BrowserRoad> road, LooksAhead looksAhead,
              const CallLimits& limits);
  ~BrowserLink();
  BrowserLink(const BrowserLink&) = delete;
  BrowserLink& operator=(const BrowserLink&) = delete;

  /// False once the connection is lost, and for ever then: a new link is needed.
  [[nodiscard]] bool isOpen() const { return road_->isOpen(); }
  [[nodiscard]] const BrowserRoad& road() const { return *road_; }
  /// As it was found: its process and start tell it from the next browser of the profile.
  [[nodiscard]] const platform::RunningBrowser& browser() const { return browser_; }
  /// For benchmarks.
  [[nodiscard]] devtools::Traffic traffic() const { return road_->traffic(); }

  /// Like BrowserDriver::snapshot. Pages that other runs have sent elsewhere arrive first, within some seconds.
  std::shared_ptr<const BrowserSnapshot> snapshot(const CallLimits& limits);
  /// When a window of the browser last had the focus, in milliseconds since 1970; see ViewedBrowser. Costs a look.
  double lastFocus(const CallLimits& limits) { return seen_.look({}, limits).lastFocus; }
  /// Like BrowserDriver::evaluate, once the page is where its navigations lead; null when it doesn't come. Code that
  /// plants a page job yields null; questions about a job are answered from its result where that came along.
  boost::json::value evaluate(TabID tab, const std::string& javascript, const CallLimits& limits);
  /// Evaluates as it stands what no other road could, once the page is where its navigations lead; nothing when it
  /// doesn't come. `longest` bounds the evaluation itself.
  std::optional<devtools::Evaluation> evaluateInPage(TabID tab, const std::string& code, const CallLimits& limits,
                                                     std::optional<std::chrono::seconds> longest);
  /// Like BrowserDriver::perform. Commands are given only to a browser that answers: one that is frozen would carry
  /// them out when it goes on, though the caller has given up long before.
  std::int64_t perform(const BrowserCommand& command, const CallLimits& limits);

private:
  using Disturbance = SeenBrowser::Disturbance;

  /// The begin of a command, on a browser that answers: waits for an answer where there was none lately. `tab` is the
  /// only one that the command changes; nothing where it may change more. The command has ended when the result goes.
  Disturbance begin(const CallLimits& limits, std::optional<TabID> tab = {});
  /// One for each command that isn't the view's or the road's alone; BrowserCommand.h says what each of them does and
  /// yields. They return when the change is made.
  TabID carryOut(const MakeTab& command, const CallLimits& limits);
  void carryOut(const CloseWindow& command, const CallLimits& limits);
  void carryOut(const ActivateTab& command, const CallLimits& limits);
  void carryOut(const Navigate& command, const CallLimits& limits);
  std::int64_t carryOut(const PlayKeys& command, const CallLimits& limits);
  void carryOut(const Activate& command, const CallLimits& limits);
  void carryOut(const ShowControls& command, const CallLimits& limits);
  void carryOut(const Quit& command, const CallLimits& limits);
  /// All others: those of the view, and those of the road.
  template <class Command>
  std::int64_t carryOut(const Command& command, const CallLimits& limits);

  /// Has the page begin with a job. Throws what evaluating throws, except for a crashed page that the job reloads.
  void plant(TabID tab, const PageJob& job, const CallLimits& limits);

  const platform::RunningBrowser browser_;
  const std::unique_ptr<BrowserRoad> road_;
  PageJobResults jobs_;
  SeenBrowser seen_; // uses the road
};

} // namespace tabwright::scripting
