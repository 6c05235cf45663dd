// Two counts tell whether what was seen still holds: that of changes, reported or our own, and that of commands and
// evaluations under way. A look holds when the first is the same after it as before it, and the second is zero at both
// ends. A call takes, in this order: the snapshot that is held; one by a look that began after the call; a look of its
// own, of which one at a time is made.
#include "scripting/driver/SeenBrowser.h"

#include <algorithm>
#include <utility>

namespace tabwright::scripting {

using namespace std::chrono_literals;

SeenBrowser::SeenBrowser(Destinations destinations, LooksAhead looksAhead, const MakeView& makeView)
    : destinations_(std::move(destinations)) {
  std::function<void()> onChange = [changes = changes_] { changes->add(); };
  if (looksAhead == LooksAhead::yes) {
    lookahead_ = std::make_unique<Lookahead>([this](const std::stop_token& stop) { lookAhead(stop); });
    onChange = [count = std::move(onChange), stale = lookahead_->staleSignal()] {
      count();
      stale();
    };
  }
  // Changes may be reported from here on. The thread that looks ahead doesn't need the view before: it looks only for
  // somebody who uses the browser.
  view_ = makeView(std::move(onChange));
}

std::shared_ptr<const BrowserSnapshot> SeenBrowser::snapshot(const CallLimits& limits) {
  if (lookahead_)
    lookahead_->used();
  return upToDate(limits);
}

bool SeenBrowser::isHeldFor(const std::stop_token& run) const {
  return jobDone_ && run.stop_possible() && jobDone_->run == run && jobDone_->changes == changes_->load() &&
         disturbances_.load() == 0;
}

std::shared_ptr<const BrowserSnapshot> SeenBrowser::upToDate(const CallLimits& limits) {
  std::uint64_t asked = 0;
  {
    const platform::MutexLock lock(mutex_);
    if (isHeld() || isHeldFor(limits.stop))
      return viewed_.snapshot;
    // A look under way may have begun before the change that we are here for.
    asked = looksBegun_;
  }
  const devtools::Turn::Holder turn = looking_.take("the browser is being looked at", limits);
  {
    const platform::MutexLock lock(mutex_);
    if (isHeld() || viewedBy_ > asked)
      return viewed_.snapshot;
  }
  return look({}, limits).snapshot;
}

void SeenBrowser::lookAhead(const std::stop_token& stop) {
  // Our own commands under way would make the look worthless; another follows when it is done.
  if (view_->reportsChanges() && disturbances_.load() == 0)
    upToDate({std::chrono::steady_clock::now() + 5s, stop});
}

void SeenBrowser::noteCommand(std::optional<TabID> tab) {
  const platform::MutexLock lock(mutex_);
  // One entry for a tab is enough, so there are never more than tabs.
  std::erase_if(unseen_, [&](const Command& command) { return command.tab == tab; });
  unseen_.push_back({++commandsEnded_, tab});
}

ViewedBrowser SeenBrowser::look(BrowserView::Extent extent, const CallLimits& limits) {
  std::uint64_t number = 0;
  std::uint64_t commands = 0;
  {
    const platform::MutexLock lock(mutex_);
    number = ++looksBegun_;
    commands = commandsEnded_;
    for (const Command& command : unseen_) {
      if (command.tab)
        extent.tabs.push_back(*command.tab);
      else
        extent.isWhole = true;
    }
  }
  const std::uint64_t before = changes_->load();
  // Taken before the view is asked: a change that comes while it answers may be missing in the answer.
  const bool mayHold = view_->reportsChanges() && disturbances_.load() == 0;
  ViewedBrowser viewed = view_->look(extent, limits);
  addDestinations(viewed);
  const platform::MutexLock lock(mutex_);
  std::erase_if(unseen_, [&](const Command& command) { return command.number <= commands; });
  if (number < viewedBy_) // a later look was faster
    return viewed;
  viewedBy_ = number;
  viewed_ = viewed;
  viewedAt_.reset();
  if (mayHold && disturbances_.load() == 0 && changes_->load() == before)
    viewedAt_ = before;
  return viewed;
}

/// A page that could not be loaded is no longer on its way for the browser, and not yet there, while the error page is
/// being made. Its own events say where it is going.
void SeenBrowser::addDestinations(ViewedBrowser& viewed) {
  const std::unordered_map<std::string, std::string> destinations = destinations_();
  if (destinations.empty())
    return;
  auto snapshot = std::make_shared<BrowserSnapshot>(*viewed.snapshot);
  for (WindowState& window : snapshot->windows) {
    for (TabState& tab : window.tabs) {
      const auto target = viewed.targets.find(tab.id);
      const auto destination = target != viewed.targets.end() ? destinations.find(target->second) : destinations.end();
      if (destination == destinations.end() || tab.isArriving)
        continue;
      tab.url = destination->second;
      tab.isArriving = true;
    }
  }
  viewed.snapshot = std::move(snapshot);
}

std::optional<std::string> SeenBrowser::findTarget(TabID tab) {
  const platform::MutexLock lock(mutex_);
  const auto found = viewed_.targets.find(tab);
  return found != viewed_.targets.end() ? std::optional(found->second) : std::nullopt;
}

void SeenBrowser::awaitFirstPage(TabID tab, const CallLimits& limits) {
  const auto isOpening = [&] {
    const platform::MutexLock lock(mutex_);
    return viewed_.opening.contains(tab);
  };
  while (isOpening()) {
    // Before the look: a change that comes during it ends the wait below at once.
    const std::uint64_t before = changes_->load();
    look({.tabs = {tab}}, limits);
    if (isOpening())
      changes_->awaitOther(before, "the tab’s first page", limits);
  }
}

void SeenBrowser::awaitTab(TabID tab, const CallLimits& limits, const std::function<bool(const TabState&)>& isSettled) {
  try {
    for (;;) {
      // Before the look: a change that comes during it ends the wait below at once.
      const std::uint64_t before = changes_->load();
      const std::shared_ptr<const BrowserSnapshot> seen = upToDate(limits);
      const TabState* state = findTab(*seen, tab);
      if (!state || isSettled(*state))
        return;
      changes_->awaitOther(before, "the tab", limits);
    }
  } catch (const devtools::DevToolsFailure& failure) {
    if (failure.kind() != devtools::DevToolsFault::timedOut)
      throw;
  }
}

std::optional<std::uint64_t> SeenBrowser::heldAt() {
  const platform::MutexLock lock(mutex_);
  return isHeld() ? viewedAt_ : std::nullopt;
}

void SeenBrowser::noteJobDone(const std::stop_token& run, std::uint64_t heldAt) {
  const platform::MutexLock lock(mutex_);
  // The job's own disturbance adds one when it ends, just after this.
  jobDone_ = {run, heldAt + 1};
}

SeenBrowser::Disturbance::~Disturbance() {
  // In this order: while the disturbance counts nothing is held, and when it no longer does the count has moved on and
  // the next look knows what to ask for.
  if (kind_ == Kind::command)
    seen_.noteCommand(tab_);
  seen_.changes_->add();
  seen_.disturbances_.fetch_sub(1);
  if (seen_.lookahead_) {
    seen_.lookahead_->used();
    seen_.lookahead_->stale();
  }
}

} // namespace tabwright::scripting
