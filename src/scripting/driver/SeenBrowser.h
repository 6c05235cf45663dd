#pragma once

#include "devtools/Waiting.h"
#include "platform/Mutex.h"
#include "scripting/driver/BrowserView.h"
#include "scripting/driver/ChangeCount.h"
#include "scripting/driver/Lookahead.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <vector>

namespace tabwright::scripting {

/// One connected browser as it is seen: its view, and the snapshot that is held until something changes.
///
/// Holding guarantees this: a snapshot was true at one moment after all our own commands and evaluations so far had
/// ended. It is kept only while no change was reported, from before it was asked for; so it lags behind the user by no
/// more than the time that the browser takes to report a change. Callers who ask at once share a look that began after
/// they asked. The program whose page job has just ended goes on with what it saw before, since all it has left to do
/// is to tell its result: for it too the snapshot lags by the time of a report. And while somebody uses the browser, a
/// look ahead is made as soon as the held snapshot holds no more.
///
/// Throws DriverFailure and DevToolsFailure. Safe to use from any thread.
class SeenBrowser {
public:
  /// Makes the view. It calls what it is handed, from any thread, whenever the browser reports a change.
  using MakeView = std::function<std::unique_ptr<BrowserView>(std::function<void()> onChange)>;
  /// Yields the addresses to which pages are on their way that the browser itself no longer tells, by target.
  using Destinations = std::function<std::unordered_map<std::string, std::string>()>;
  SeenBrowser(Destinations destinations, LooksAhead looksAhead, const MakeView& makeView);

  /// The windows and tabs as they are. Costs no round trip while the last look holds.
  ///
  ///     const SeenBrowser::Disturbance disturbance(seen, SeenBrowser::Disturbance::Kind::command, tab);
  ///     seen.view().perform(ActivateTab{tab}, limits);
  std::shared_ptr<const BrowserSnapshot> snapshot(const CallLimits& limits);
  /// Looks in any case, at the extent and all that our own commands have changed since the last look.
  ViewedBrowser look(BrowserView::Extent extent, const CallLimits& limits);
  /// The target of a tab as last seen, which holds for longer than the rest of a snapshot; nothing for a tab that
  /// wasn't there, empty for one whose page isn't loaded. Asks nobody.
  std::optional<std::string> findTarget(TabID tab);
  /// Waits until a tab that was just made shows the page it was made for, not the empty document it begins with.
  /// Returns at once for any other tab. Throws DevToolsFailure `timedOut` where that page doesn't come.
  void awaitFirstPage(TabID tab, const CallLimits& limits);

  /// Looks until `isSettled` holds for the tab, or it is gone, or the limits have passed, which is no failure. Throws
  /// `stopped` for a stop.
  void awaitTab(TabID tab, const CallLimits& limits, const std::function<bool(const TabState&)>& isSettled);

  /// Something has changed that the browser may not have reported to the view yet.
  void noteChange() { changes_->add(); }
  /// The count of changes that the held snapshot holds for; nothing when none is held.
  std::optional<std::uint64_t> heldAt();
  /// The page job of a run has ended that began while a snapshot was held.
  void noteJobDone(const std::stop_token& run, std::uint64_t heldAt);

  /// For commands, each of which is a Disturbance while it lasts.
  [[nodiscard]] BrowserView& view() { return *view_; }

  /// While one lives, something of ours may be changing the browser.
  class Disturbance {
  public:
    /// Changes that a page makes by itself the browser reports; our own commands are looked for.
    enum class Kind { command, evaluation };

    /// A command that names a tab changes nothing but this tab, and which one its window shows.
    Disturbance(SeenBrowser& seen, Kind kind, std::optional<TabID> tab = {}) : seen_(seen), kind_(kind), tab_(tab) {
      seen_.disturbances_.fetch_add(1);
    }
    ~Disturbance();
    /// The tab, for a command that makes it.
    void concerns(TabID tab) { tab_ = tab; }
    Disturbance(const Disturbance&) = delete;
    Disturbance& operator=(const Disturbance&) = delete;

  private:
    SeenBrowser& seen_;
    const Kind kind_;
    std::optional<TabID> tab_;
  };

private:
  /// The held snapshot, another's look or an own one.
  std::shared_ptr<const BrowserSnapshot> upToDate(const CallLimits& limits);
  /// A look on the thread of the Lookahead; none while a command of ours is under way.
  void lookAhead(const std::stop_token& stop);
  /// Has the next look ask for what the command has changed.
  void noteCommand(std::optional<TabID> tab);
  void addDestinations(ViewedBrowser& viewed);
  /// Nothing was reported or begun since the last look.
  [[nodiscard]] bool isHeld() const REQUIRES(mutex_) {
    return viewedAt_ == changes_->load() && disturbances_.load() == 0;
  }
  /// Nothing but the run's own page job has come between since the last look.
  [[nodiscard]] bool isHeldFor(const std::stop_token& run) const REQUIRES(mutex_);

  const Destinations destinations_;
  const std::shared_ptr<ChangeCount> changes_ = std::make_shared<ChangeCount>();
  std::atomic<std::uint64_t> disturbances_ = 0;
  std::unique_ptr<BrowserView> view_;

  devtools::Turn looking_;
  platform::Mutex mutex_;
  ViewedBrowser viewed_ GUARDED_BY(mutex_);
  std::uint64_t looksBegun_ GUARDED_BY(mutex_) = 0;
  std::uint64_t viewedBy_ GUARDED_BY(mutex_) = 0;            // the number of the look that viewed_ is from
  std::optional<std::uint64_t> viewedAt_ GUARDED_BY(mutex_); // the count of changes that viewed_ holds for
  struct Command {
    std::uint64_t number;
    std::optional<TabID> tab; // nothing for one that may have changed anything
  };
  std::uint64_t commandsEnded_ GUARDED_BY(mutex_) = 0;
  std::vector<Command>
      unseen_ GUARDED_BY(mutex_); // commands that have ended since the last look began, the last one to each tab
  struct JobDone {
    std::stop_token run;
    std::uint64_t changes; // the count of changes with that of the job itself
  };
  std::optional<JobDone> jobDone_ GUARDED_BY(mutex_); // the last page job on a browser whose snapshot was held

  std::unique_ptr<Lookahead> lookahead_; // null without; the last member: its thread ends before what it uses
};

} // namespace tabwright::scripting
