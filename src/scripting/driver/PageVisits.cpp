#include "scripting/driver/PageVisits.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using devtools::Session;

namespace {

constexpr std::chrono::seconds patienceOfLooks(3);
constexpr std::chrono::milliseconds patienceAfterGivingUp(50);
constexpr std::size_t mostGivenUp = 64;

bool isSameRun(const std::stop_token& left, const std::stop_token& right) {
  return left.stop_possible() && left == right;
}

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

bool PageVisits::giveUp(TabID tab, const std::stop_token& run) {
  const platform::MutexLock lock(mutex_);
  if (isGivenUp(tab, run))
    return false;
  givenUp_.push_back({tab, run});
  if (givenUp_.size() > mostGivenUp)
    givenUp_.pop_front();
  return true;
}

bool PageVisits::settleOthers(const platform::CallLimits& limits) {
  std::vector<Visit> others;
  {
    const platform::MutexLock lock(mutex_);
    if (visits_.empty())
      return false;
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
      if (concernsBrowser(failure) || failure.kind() == DevToolsFault::stopped)
        throw;
    }
    hasLeft = hasLeft || page->departures() != visit.departures;
  }
  return hasLeft;
}

} // namespace tabwright::scripting
