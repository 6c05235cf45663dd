#pragma once

#include "devtools/Discovery.h"
#include "devtools/Waiting.h"
#include "platform/linux/RunningBrowsers.h"
#include "scripting/driver/BrowserView.h"
#include "scripting/driver/ChangeCount.h"
#include "scripting/driver/Lookahead.h"
#include "scripting/driver/PageJobs.h"
#include "scripting/driver/PageSessions.h"
#include "scripting/driver/PageVisits.h"

#include <boost/json/value.hpp>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::scripting {

/// One browser that we are connected to, from the first call to it until it ends: its view, its pages, and the snapshot
/// that is held until something changes.
///
/// What holding guarantees: a snapshot was true at one moment after all our own commands and evaluations so far had
/// ended. It is kept only while no change was reported, from before it was asked for; so it lags behind the user by no
/// more than the time that the browser takes to report a change. Callers who ask at once share a look that began after
/// they asked. The program whose page job has just ended goes on with what it saw before, since all it has left to do
/// is to tell its result: for it too the snapshot lags by the time of a report. And while somebody uses the browser, a
/// look ahead is made as soon as the held snapshot holds no more.
///
/// Throws DriverFailure and DevToolsFailure. Safe to use from any thread.
class BrowserLink {
public:
  /// Connects; loads the helper where it isn't there. `browser` is the one that listens at the endpoint.
  static std::shared_ptr<BrowserLink> open(const platform::RunningBrowser& browser, const devtools::Endpoint& endpoint,
                                           const std::filesystem::path& helperDirectory, LooksAhead looksAhead,
                                           const CallLimits& limits);
  ~BrowserLink();

  [[nodiscard]] bool isOpen() const { return connection_->isOpen(); }
  [[nodiscard]] const platform::RunningBrowser& browser() const { return browser_; }
  [[nodiscard]] devtools::Traffic traffic() const { return connection_->traffic(); }

  std::shared_ptr<const BrowserSnapshot> snapshot(const CallLimits& limits);
  /// See ViewedBrowser.
  double lastFocus(const CallLimits& limits) { return look({}, limits).lastFocus; }
  boost::json::value evaluate(TabID tab, const std::string& javascript, const CallLimits& limits);
  TabID makeTab(WindowID window, std::optional<std::size_t> index, const std::string& url, const CallLimits& limits);
  void activateTab(TabID tab, const CallLimits& limits);
  void navigate(TabID tab, const std::string& url, const CallLimits& limits);
  void goInHistory(TabID tab, BrowserDriver::History direction, const CallLimits& limits);
  void reload(TabID tab, const CallLimits& limits);
  void stopLoading(TabID tab, const CallLimits& limits);
  void closeWindow(WindowID window, const CallLimits& limits);
  void setBounds(WindowID window, WindowBounds bounds, const CallLimits& limits);
  void setShape(WindowID window, BrowserDriver::WindowShape shape, const CallLimits& limits);
  /// Asks the browser to end, and waits until it has.
  void quit(const CallLimits& limits);

  /// Runs a command on the view; what was seen before it holds no more. Like all commands it is given only to a browser
  /// that answers: one that is frozen would carry it out when it goes on, though its caller has given up long before.
  template <class Command>
  auto command(const CallLimits& limits, Command&& command) {
    connection_->requireAnswer(limits);
    const Disturbance disturbance(*this, Disturbance::Kind::command);
    return command(*view_);
  }

private:
  /// While one lives, something of ours may be changing the browser.
  class Disturbance {
  public:
    /// What a page does by itself the browser reports; our own commands are looked for.
    enum class Kind { command, evaluation };

    explicit Disturbance(BrowserLink& link, Kind kind = Kind::command) : link_(link), kind_(kind) {
      link_.disturbances_->fetch_add(1);
    }
    /// The command changes nothing but this tab, and which one its window shows.
    void concerns(TabID tab) { tab_ = tab; }
    ~Disturbance() {
      if (kind_ == Kind::command)
        link_.noteCommand(tab_);
      link_.changes_->add();
      link_.disturbances_->fetch_sub(1);
      if (link_.lookahead_) {
        link_.lookahead_->used();
        link_.lookahead_->stale();
      }
    }
    Disturbance(const Disturbance&) = delete;
    Disturbance& operator=(const Disturbance&) = delete;

  private:
    BrowserLink& link_;
    const Kind kind_;
    std::optional<TabID> tab_;
  };

  using Counter = std::shared_ptr<std::atomic<std::uint64_t>>;
  BrowserLink(platform::RunningBrowser browser, std::shared_ptr<devtools::Connection> connection);
  std::shared_ptr<const BrowserSnapshot> upToDate(const CallLimits& limits);
  void lookAhead(const std::stop_token& stop);
  void noteCommand(std::optional<TabID> tab);
  ViewedBrowser look(BrowserView::Extent extent, const CallLimits& limits);
  void addDestinations(ViewedBrowser& viewed);
  [[nodiscard]] bool isHeld() const { return viewedAt_ == changes_->load() && disturbances_->load() == 0; }
  [[nodiscard]] bool isHeldFor(const std::stop_token& run) const;
  std::optional<std::string> findTarget(TabID tab);
  std::shared_ptr<devtools::Session> requirePage(TabID tab, const CallLimits& limits);
  void awaitOpening(TabID tab, const CallLimits& limits);
  void plant(TabID tab, const PageJob& job, const CallLimits& limits);
  std::optional<devtools::Evaluation> evaluateOnArrival(TabID tab, const std::string& code, const CallLimits& limits,
                                                        std::optional<std::chrono::seconds> longest);
  bool comes(TabID tab, const CallLimits& limits, const std::function<void()>& wait,
             const std::function<bool()>& isOnItsWay);
  static void noticeFailedLoad(devtools::Session& page, const CallLimits& limits);
  void arrive(TabID tab, devtools::Session& page, const CallLimits& limits);
  void leave(const std::shared_ptr<devtools::Session>& page, const CallLimits& limits);
  template <class Call>
  auto onPage(TabID tab, const CallLimits& limits, Call&& call);
  bool closeDeveloperTools(WindowID window, const CallLimits& limits);
  void changeWindow(WindowID window, boost::json::object bounds, const CallLimits& limits);

  const platform::RunningBrowser browser_;
  std::shared_ptr<devtools::Connection> connection_;
  PageSessions pages_;
  PageVisits visits_;
  PageJobResults jobs_;
  const std::shared_ptr<ChangeCount> changes_ = std::make_shared<ChangeCount>();
  const Counter disturbances_ = std::make_shared<std::atomic<std::uint64_t>>(0);
  std::unique_ptr<BrowserView> view_;

  devtools::Turn looking_;
  std::mutex mutex_; // guards what follows, but not the lookahead
  ViewedBrowser viewed_;
  std::uint64_t looksBegun_ = 0;
  std::uint64_t viewedBy_ = 0;            // the number of the look that viewed_ is from
  std::optional<std::uint64_t> viewedAt_; // the count of changes that viewed_ holds for
  struct Command {
    std::uint64_t number;
    std::optional<TabID> tab; // nothing for one that may have changed anything
  };
  std::uint64_t commandsEnded_ = 0;
  std::vector<Command> unseen_; // commands that have ended since the last look began, the last one to each tab
  struct JobDone {
    std::stop_token run;
    std::uint64_t changes; // the count of changes with that of the job itself
  };
  std::optional<JobDone> jobDone_; // the last page job on a browser whose snapshot was held

  std::unique_ptr<Lookahead> lookahead_; // null without; the last member: its thread ends before what it uses
};

} // namespace tabwright::scripting
