#pragma once

#include "devtools/Waiting.h"
#include "scripting/driver/PageSessions.h"
#include "scripting/driver/PageVisits.h"
#include "scripting/driver/SeenBrowser.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tabwright::scripting {

/// The pages that the tabs of one browser show: found, waited for while they are on their way, evaluated in.
///
/// Throws DriverFailure (`noSuchTab`, and `refused` for a tab whose page isn't loaded) and DevToolsFailure. Safe to use
/// from any thread. All that it is made of outlives it.
class TabPages {
public:
  TabPages(const devtools::Connection& connection, PageSessions& pages, PageVisits& visits, SeenBrowser& seen)
      : connection_(connection), pages_(pages), visits_(visits), seen_(seen) {}

  /// The session of the page that the tab shows now. Looks at the browser only for a tab whose page isn't known.
  std::shared_ptr<devtools::Session> require(TabID tab, const CallLimits& limits);

  /// Calls `call` with that session, and yields what it yields. A page that is just taking the place of another, as in
  /// a new tab, refuses for some milliseconds: then the call is made again, for three seconds at most. So `call` must
  /// be able to be made twice.
  ///
  ///     pages.with(tab, limits, [&](const auto& page) { return page->evaluate("document.title", limits); });
  template <class Call>
  auto with(TabID tab, const CallLimits& limits, Call&& call) {
    const CallLimits patience = limits.within(std::chrono::seconds(3));
    for (;;) {
      try {
        return call(require(tab, limits));
      } catch (const devtools::DevToolsFailure& failure) {
        if (!isComing(failure) || patience.hasPassed())
          throw;
      }
      devtools::pause(std::chrono::milliseconds(5), "the page is just coming", limits);
    }
  }

  /// Evaluates once the page is where its navigations lead; nothing when it doesn't come, because its server is silent.
  /// A run waits for that but once, so that programs which ask again and again end by their own count. `longest` bounds
  /// the evaluation itself. The run's user gets notice of a page that doesn't come, and of one that could not be
  /// loaded.
  std::optional<devtools::Evaluation> evaluateOnArrival(TabID tab, const std::string& code, const CallLimits& limits,
                                                        std::optional<std::chrono::seconds> longest);

  /// Lets a navigation that is under way come to its end, for a command that means the page it leads to. The browser
  /// carries such commands out on a page that answers nothing too, and on one whose server is silent.
  void arrive(TabID tab, devtools::Session& page, const CallLimits& limits);

  /// A command follows that makes the page leave: the next run waits for where it leads.
  void leave(const std::shared_ptr<devtools::Session>& page, const CallLimits& limits);

private:
  /// The browser's refusal while a page takes the place of another.
  static bool isComing(const devtools::DevToolsFailure& failure);
  /// Calls `wait`. False when it takes longer than a run waits for a page, while `isOnItsWay` says that one is coming.
  bool comes(TabID tab, const CallLimits& limits, const std::function<void()>& wait,
             const std::function<bool()>& isOnItsWay);

  const devtools::Connection& connection_;
  PageSessions& pages_;
  PageVisits& visits_;
  SeenBrowser& seen_;
};

} // namespace tabwright::scripting
