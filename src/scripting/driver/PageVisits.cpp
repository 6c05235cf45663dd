// A visit remembers a page, the run that touched it, and how often the page had set out for elsewhere by then. The next
// run asks such a page for one answer, before which all its events have come, and so waits for what the last run set
// going; a run's own visits are passed over. Runs that have waited in vain are remembered too, since programs ask again
// and again.
#include "scripting/driver/PageVisits.h"

#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using devtools::Session;

namespace {

// For all pages together that one look waits for.
constexpr std::chrono::seconds patienceOfLooks(3);
// Enough for a page that has come meanwhile to answer.
constexpr std::chrono::milliseconds patienceAfterGivingUp(50);
constexpr std::size_t mostGivenUp = 64;

} // namespace

void PageVisits::note(const std::shared_ptr<Session>& page, const std::stop_token& run) {
  const std::uint64_t departures = page->departures();
  const platform::MutexLock lock(mutex_);
  std::erase_if(visits_, [&](const Visit& visit) {
    const std::shared_ptr<Session> other = visit.page.lock();
    return !other || other == page;
  });
  visits_.push_back({page, run, departures});
}

bool PageVisits::settle(Session& page, const platform::CallLimits& limits) {
  bool isOwn = false;
  {
    const platform::MutexLock lock(mutex_);
    isOwn = std::ranges::any_of(visits_, [&](const Visit& visit) {
      return isSameRun(visit.run, limits.stop) && visit.page.lock().get() == &page;
    });
  }
  const bool mayBeAnother = !isOwn || page.isLeaving();
  // Code for a page that is frozen would run when it goes on, after the caller has given up.
  if (mayBeAnother || !page.answersLately())
    page.settle(Session::Answer::lately, limits);
  return mayBeAnother;
}

bool PageVisits::isGivenUp(TabID tab, const std::stop_token& run) const {
  return std::ranges::any_of(givenUp_, [&](const GivenUp& one) { return one.tab == tab && isSameRun(one.run, run); });
}

platform::CallLimits PageVisits::patienceWith(TabID tab, const platform::CallLimits& limits) {
  const platform::MutexLock lock(mutex_);
  const std::chrono::milliseconds patience =
      isGivenUp(tab, limits.stop) ? patienceAfterGivingUp : std::chrono::milliseconds(longestPatience);
  return limits.within(patience);
}

void PageVisits::giveUp(TabID tab, const platform::CallLimits& limits) {
  {
    const platform::MutexLock lock(mutex_);
    if (isGivenUp(tab, limits.stop))
      return;
    givenUp_.push_back({tab, limits.stop});
    if (givenUp_.size() > mostGivenUp)
      givenUp_.pop_front();
  }
  platform::giveNotice(
      limits, {{"Page", "notCome", {}},
               fmt::format("The page that the tab is going to has not come in {} seconds: its server does not answer.",
                           longestPatience.count())});
}

bool PageVisits::settleOthers(const platform::CallLimits& limits) {
  std::vector<Visit> others;
  {
    const platform::MutexLock lock(mutex_);
    if (visits_.empty())
      return false;
    // Taken out before the waits, so that each is waited for once, whoever looks next.
    std::vector<Visit> own;
    for (Visit& visit : visits_)
      (isSameRun(visit.run, limits.stop) ? own : others).push_back(std::move(visit));
    visits_ = std::move(own);
  }
  bool hasLeft = false;
  const platform::CallLimits patience = limits.within(patienceOfLooks);
  for (const Visit& visit : others) {
    const std::shared_ptr<Session> page = visit.page.lock();
    if (!page)
      continue;
    try {
      page->settle(Session::Answer::ever, patience);
      if (!page->answersLately())
        page->probe(); // this page is likely to be the one that is meant: its answer comes along
    } catch (const DevToolsFailure& failure) {
      // A page that is late, closed or crashed has come as far as it will.
      if (concernsBrowser(failure) || failure.kind() == DevToolsFault::stopped)
        throw;
    }
    hasLeft = hasLeft || page->departures() != visit.departures;
  }
  return hasLeft;
}

} // namespace tabwright::scripting
