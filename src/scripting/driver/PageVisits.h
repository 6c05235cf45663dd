#pragma once

#include "devtools/Session.h"
#include "platform/Mutex.h"
#include "scripting/driver/BrowserDriver.h"

#include <chrono>
#include <cstdint>
#include <list>
#include <memory>
#include <stop_token>
#include <vector>

namespace tabwright::scripting {

/// True for calls of one run. Stop tokens without a state are all equal, and tell nothing about who calls.
[[nodiscard]] inline bool isSameRun(const std::stop_token& left, const std::stop_token& right) {
  return left.stop_possible() && left == right;
}

/// The pages that runs have evaluated code in or sent elsewhere, so that the runs after them begin with what has come
/// of it. A run is known by its stop token; a call that can't be stopped is a run of its own.
///
/// A run itself does not wait for what its code may have set going, only for what the page has told of: so an action
/// that makes a page leave is done at once. Throws DevToolsFailure. Safe to use from any thread.
///
///     visits.settle(*page, limits);
///     visits.note(page, limits.stop);
///     page->evaluate(code, limits);
class PageVisits {
public:
  /// Code is about to be evaluated in the page, or a command to be given to it.
  void note(const std::shared_ptr<devtools::Session>& page, const std::stop_token& run);

  /// Before code is evaluated: waits until the page is where its navigations lead, and answers. True when the run may
  /// meet another page than before.
  bool settle(devtools::Session& page, const platform::CallLimits& limits);

  /// Limits for waiting until a tab's page has come: the given ones, but no longer than `longestPatience`, and for a
  /// run that has given it up already hardly at all.
  [[nodiscard]] platform::CallLimits patienceWith(TabID tab, const platform::CallLimits& limits);
  /// The run has waited for the tab's page in vain, of which its user gets notice once.
  void giveUp(TabID tab, const platform::CallLimits& limits);
  static constexpr std::chrono::seconds longestPatience{10};

  /// Before the browser is looked at: the same for all pages that other runs have visited. One that has not arrived
  /// within some seconds is seen as it is, once and for all. True when one of them has left its address since.
  bool settleOthers(const platform::CallLimits& limits);

private:
  /// Weak, so that a page that nobody is attached to any more isn't waited for.
  struct Visit {
    std::weak_ptr<devtools::Session> page;
    std::stop_token run;
    std::uint64_t departures; // the page's count before that
  };

  /// A tab whose page a run no longer waits for.
  struct GivenUp {
    TabID tab;
    std::stop_token run;
  };

  /// Among the last 64 only: a run that was forgotten waits once more.
  [[nodiscard]] bool isGivenUp(TabID tab, const std::stop_token& run) const REQUIRES(mutex_);

  platform::Mutex mutex_;
  std::vector<Visit> visits_ GUARDED_BY(mutex_);  // at most one to each page, the last
  std::list<GivenUp> givenUp_ GUARDED_BY(mutex_); // the latest last; few, since runs end
};

} // namespace tabwright::scripting
