#pragma once

#include "devtools/Connection.h"
#include "devtools/Discovery.h"
#include "devtools/Waiting.h"
#include "platform/BrowserTable.h"
#include "platform/Mutex.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/driver/BrowserDriver.h"
#include "scripting/driver/Lookahead.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace tabwright::scripting {

class BrowserLink;

/// The facts of the machine that a DevToolsDriver needs.
struct DevToolsDriverParts {
  std::filesystem::path helperDirectory; ///< the unpacked helper, absolute; the browser loads it from there
  /// The browsers of the driver's kind that run now, the preferred one first. Called from any thread.
  std::function<std::vector<platform::RunningBrowser>()> findRunning;
  devtools::Discovery discovery{};
  /// After this long the next run looks for browsers again; and a pause between calls without a run this long ends what
  /// belongs together.
  std::chrono::nanoseconds pauseBetweenRuns = std::chrono::seconds(1);
  LooksAhead looksAhead = LooksAhead::yes; ///< see BrowserLink; without it only calls make traffic
};

/// A browser of the Chromium family, reached over the DevTools protocol.
///
///     const platform::BrowserFacts& facts = *platform::findBrowser("chromium");
///     DevToolsDriver driver(facts, {helperDirectory, [&] { return platform::RunningBrowsers().find(facts); }});
///
/// Connects on the first call, and again on the first call after its browser has ended. Among several running browsers
/// of one kind it takes the first found that accepts remote debugging. All calls of a run, which share their notices,
/// go to one browser. Which one is meant is asked again by the next run where several were found, and a while after.
/// If that one and others have windows whose order nobody outside
/// knows, they are all asked for their last focus, and the latest counts. The helper is loaded into each browser on the
/// way. A call without a deadline of its own ends after 30 seconds.
class DevToolsDriver final : public BrowserDriver {
public:
  /// `facts` is a row of the table, and outlives the driver.
  DevToolsDriver(const platform::BrowserFacts& facts, DevToolsDriverParts parts);
  ~DevToolsDriver() override;

  [[nodiscard]] bool isRunning() override;
  std::shared_ptr<const BrowserSnapshot> snapshot(const CallLimits& limits) override;
  boost::json::value evaluate(TabID tab, const std::string& javascript, const CallLimits& limits) override;
  std::int64_t perform(const BrowserCommand& command, const CallLimits& limits) override;

  /// The messages over the present connection so far, for benchmarks; zero without one.
  [[nodiscard]] devtools::Traffic traffic();

private:
  std::shared_ptr<BrowserLink> currentLink();
  bool beginsAnew(bool isNewRun);
  std::shared_ptr<BrowserLink> linkOfRun(const CallLimits& limits);
  void keepForRun(const CallLimits& limits, const std::shared_ptr<BrowserLink>& link);
  std::shared_ptr<BrowserLink> requireLink(const CallLimits& limits);
  std::shared_ptr<BrowserLink> chooseLink(const CallLimits& limits);
  std::shared_ptr<BrowserLink> connect(const CallLimits& limits);
  std::shared_ptr<BrowserLink> tryLink(const platform::RunningBrowser& browser, const CallLimits& limits);
  template <class Call>
  auto withLink(const CallLimits& limits, const std::string& subject, Call&& call);

  const platform::BrowserFacts& facts_;
  const DevToolsDriverParts parts_;
  devtools::Turn connecting_;
  platform::Mutex mutex_;
  std::shared_ptr<BrowserLink> link_ GUARDED_BY(mutex_);
  std::chrono::steady_clock::time_point called_ GUARDED_BY(mutex_); // the last call's begin
  std::chrono::steady_clock::time_point chosen_ GUARDED_BY(mutex_); // when browsers were last looked for
  bool foundSeveral_ GUARDED_BY(mutex_) = false;
  struct Run {
    std::weak_ptr<platform::Notices> notices; ///< gone when the run has ended
    std::shared_ptr<BrowserLink> link;
  };
  std::vector<Run> runs_ GUARDED_BY(mutex_);
};

} // namespace tabwright::scripting
