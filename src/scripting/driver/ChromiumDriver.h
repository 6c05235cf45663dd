#pragma once

#include "devtools/Connection.h"
#include "devtools/Discovery.h"
#include "devtools/Waiting.h"
#include "platform/BrowserTable.h"
#include "platform/Mutex.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/driver/BrowserDriver.h"
#include "scripting/driver/Lookahead.h"
#include "scripting/driver/RelayConnection.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tabwright::scripting {

class BrowserLink;

/// The facts of the machine that a ChromiumDriver needs.
struct ChromiumDriverParts {
  std::filesystem::path helperDirectory; ///< the unpacked helper, absolute; the browser loads it from there
  /// The browsers of the driver's kind that run now, the preferred one first. Called from any thread.
  std::function<std::vector<platform::RunningBrowser>()> findRunning;
  /// Finds the debugging port of a profile, and refuses one that somebody else listens at.
  devtools::Discovery discovery{};
  /// Finds the relays of a browser, whose helper is preferred to a debugging port.
  std::function<std::vector<RelayPlace>(const platform::RunningBrowser&)> findRelays = scripting::findRelays;
  /// After this long the next run looks for browsers again; and a pause between calls without a run this long ends what
  /// belongs together.
  std::chrono::nanoseconds pauseBetweenRuns = std::chrono::seconds(1);
  /// The only profile that counts; empty: any.
  std::string profile{};
  /// True when the profile that a helper calls by this mark is called by that name; with an empty mark, when the
  /// browser as a whole is. Called only with a profile.
  std::function<bool(const platform::RunningBrowser&, const std::string& mark, const std::string& name)> isProfile{};
  LooksAhead looksAhead = LooksAhead::yes; ///< see BrowserLink; without it only calls make traffic
};

/// A browser of the Chromium family, reached by the helper that is installed in it, or over the DevTools protocol.
///
///     const platform::BrowserFacts& facts = *platform::findBrowser("chromium");
///     ChromiumDriver driver(facts, {helperDirectory, [&] { return platform::RunningBrowsers().find(facts); }});
///
/// Connects on the first call, and again on the first call after its browser has ended. Among several running browsers
/// of one kind it takes the first found that has an installed helper or accepts remote debugging. A browser with both
/// is reached by its helper, and by the port for what the helper can't do; a helper that may run no scripts leaves all
/// to the port. Of several profiles with helpers in one browser the one last focused counts. All calls of a run, which
/// share their notices, go to one browser. Which one is meant is asked again by the next run where several were found,
/// and a while after. If that one and others have windows whose order nobody outside knows, they are all asked for
/// their last focus, and the latest counts. A browser with a port alone is given the helper on the way. A call without
/// a deadline of its own ends after 30 seconds.
///
/// Safe to use from any thread. Calls that connect take turns; all others run side by side.
class ChromiumDriver final : public BrowserDriver {
public:
  /// `facts` is a row of the table, and outlives the driver.
  ChromiumDriver(const platform::BrowserFacts& facts, ChromiumDriverParts parts);
  /// Ends the connections; the browsers go on.
  ~ChromiumDriver() override;

  /// True with a connection, and for any process of the browser's kind. Reads the process table else.
  [[nodiscard]] bool isRunning() override;
  std::shared_ptr<const BrowserSnapshot> snapshot(const CallLimits& limits) override;
  boost::json::value evaluate(TabID tab, const std::string& javascript, const CallLimits& limits) override;
  std::int64_t perform(const BrowserCommand& command, const CallLimits& limits) override;

  /// The messages over the present connection so far, for benchmarks; zero without one. Connects to nothing.
  [[nodiscard]] devtools::Traffic traffic();

private:
  /// The link that was chosen last; null without one, and once its connection is lost.
  std::shared_ptr<BrowserLink> currentLink();
  /// True when the browser that is meant is to be looked for again.
  bool beginsAnew(bool isNewRun);
  /// The link of the run's earlier calls; null for its first one, and once that browser has ended.
  std::shared_ptr<BrowserLink> linkOfRun(const CallLimits& limits);
  /// Nothing for calls without notices, which belong to no run.
  void keepForRun(const CallLimits& limits, const std::shared_ptr<BrowserLink>& link);
  /// The link for a call. Throws DriverFailure (notRunning, notAccepting, unreachable) and DevToolsFailure.
  std::shared_ptr<BrowserLink> requireLink(const CallLimits& limits);
  /// The last link, or one that is looked for anew. Where looking fails, a last link that is still open counts.
  std::shared_ptr<BrowserLink> chooseLink(const CallLimits& limits);
  /// Looks for all running browsers and takes the one that is meant.
  std::shared_ptr<BrowserLink> connect(const CallLimits& limits);
  /// A link to this browser; null when it can't be reached by any road.
  std::shared_ptr<BrowserLink> tryLink(const platform::RunningBrowser& browser, const CallLimits& limits);
  /// The link by the helper in the profile that was focused last; null when none is there.
  std::shared_ptr<BrowserLink> tryRelays(const platform::RunningBrowser& browser, const CallLimits& limits);
  /// The link by the debugging port; null when the browser takes no connections.
  std::shared_ptr<BrowserLink> tryPort(const platform::RunningBrowser& browser, const CallLimits& limits);
  /// The open link to this browser through that relay (0: by its port); made by `open` where there is none.
  std::shared_ptr<BrowserLink> linkTo(const platform::RunningBrowser& browser, pid_t relay,
                                      const std::function<std::shared_ptr<BrowserLink>()>& open);
  /// True when the profile with this mark (empty: the browser as a whole) is the one asked for, or none is asked for.
  [[nodiscard]] bool isMeant(const platform::RunningBrowser& browser, const std::string& mark) const;
  /// True when the browser has been reached by its helper before.
  bool hadRelay(const platform::RunningBrowser& browser);
  /// Calls `call` with the link; DevToolsFailure and JSONMismatch come out as DriverFailure. `subject` is the tab's id,
  /// or empty.
  template <class Call>
  auto withLink(const CallLimits& limits, const std::string& subject, Call&& call);

  const platform::BrowserFacts& facts_;
  const ChromiumDriverParts parts_;
  devtools::Turn connecting_;
  platform::Mutex mutex_;
  std::shared_ptr<BrowserLink> link_ GUARDED_BY(mutex_);
  /// All links that are open, and those through relays for as long as their browser may come back to them.
  struct KnownLink {
    pid_t browser;
    std::uint64_t startTime;
    pid_t relay; // 0 for the port
    std::shared_ptr<BrowserLink> link;
  };
  std::vector<KnownLink> links_ GUARDED_BY(mutex_);
  std::chrono::steady_clock::time_point called_ GUARDED_BY(mutex_); // the last call's begin
  std::chrono::steady_clock::time_point chosen_ GUARDED_BY(mutex_); // when browsers were last looked for
  bool foundSeveral_ GUARDED_BY(mutex_) = false;
  /// A run of an action's, known by where it collects its notices.
  struct Run {
    std::weak_ptr<platform::Notices> notices; ///< gone when the run has ended
    std::shared_ptr<BrowserLink> link;
  };
  std::vector<Run> runs_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
