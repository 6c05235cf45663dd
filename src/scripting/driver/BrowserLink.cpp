#include "scripting/driver/BrowserLink.h"

#include "devtools/WireText.h"
#include "platform/AsciiCase.h"
#include "platform/Logger.h"
#include "platform/linux/ProcessExit.h"
#include "scripting/driver/HelperView.h"
#include "scripting/driver/ProtocolView.h"

#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <string_view>
#include <unordered_map>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using devtools::Session;
using namespace std::chrono_literals;

namespace {

const platform::Logger log("BrowserLink");

constexpr auto patienceWithNewPages = 3s;
constexpr auto patienceWithBusyPages = 20s; // beside that with pages on their way
constexpr auto patienceWithPlanting = 10s;  // which takes a page a tenth of a second, unless its code keeps it busy
constexpr auto newPagePollInterval = 5ms;
constexpr std::string_view notActive = "Not attached to an active page"; // the browser's words

/// "156.0.8078.79" of "HeadlessChrome/156.0.8078.79".
std::string versionOf(const boost::json::object& reply) {
  const std::string product(reply.at("product").as_string());
  return product.substr(product.find('/') + 1);
}

/// Whether an address names code to run in the page (the "javascript" scheme, compared ignoring case).
bool isJavaScript(const std::string& url) {
  constexpr std::string_view scheme = "javascript:";
  return platform::equalIgnoringCase(std::string_view(url).substr(0, scheme.size()), scheme);
}

} // namespace

std::shared_ptr<BrowserLink> BrowserLink::open(const platform::RunningBrowser& browser,
                                               const devtools::Endpoint& endpoint,
                                               const std::filesystem::path& helperDirectory, LooksAhead looksAhead,
                                               const CallLimits& limits) {
  std::shared_ptr<BrowserLink> link(new BrowserLink(browser, devtools::Connection::open(endpoint, limits)));
  const auto version = link->connection_->send("Browser.getVersion", {});
  std::function<void()> onChange = [changes = link->changes_] { changes->add(); };
  if (looksAhead == LooksAhead::yes) {
    link->lookahead_ =
        std::make_unique<Lookahead>([&link = *link](const std::stop_token& stop) { link.lookAhead(stop); });
    onChange = [count = std::move(onChange), stale = link->lookahead_->staleBell()] {
      count();
      stale();
    };
  }
  try {
    auto worker = std::make_unique<HelperWorker>(
        link->connection_, HelperPlace{helperDirectory, browser.profileDirectory}, std::move(onChange));
    worker->prepare(limits);
    link->view_ = std::make_unique<HelperView>(std::move(worker), versionOf(version->result(limits)));
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::refused)
      throw;
    log.error("The browser takes no helper, so the order of windows and tabs is a guess: {}", failure.detail());
    link->view_ = std::make_unique<ProtocolView>(link->connection_, link->pages_, versionOf(version->result(limits)));
  }
  return link;
}

BrowserLink::BrowserLink(platform::RunningBrowser browser, std::shared_ptr<devtools::Connection> connection)
    : browser_(std::move(browser)), connection_(std::move(connection)), pages_(connection_) {}

BrowserLink::~BrowserLink() = default;

// ---------------------------------------------------------------------------------------------------------- looking

std::shared_ptr<const BrowserSnapshot> BrowserLink::snapshot(const CallLimits& limits) {
  if (lookahead_)
    lookahead_->used();
  if (visits_.settleOthers(limits))
    changes_->add(); // the browser has told us of them, but the helper may not have yet
  return upToDate(limits);
}

bool BrowserLink::isHeldFor(const std::stop_token& run) const {
  return jobDone_ && run.stop_possible() && jobDone_->run == run && jobDone_->changes == changes_->load() &&
         disturbances_->load() == 0;
}

std::shared_ptr<const BrowserSnapshot> BrowserLink::upToDate(const CallLimits& limits) {
  std::uint64_t asked = 0;
  {
    const std::lock_guard lock(mutex_);
    if (isHeld() || isHeldFor(limits.stop))
      return viewed_.snapshot;
    asked = looksBegun_;
  }
  const devtools::Turn::Holder turn = looking_.take("the browser is being looked at", limits);
  {
    const std::lock_guard lock(mutex_);
    if (isHeld() || viewedBy_ > asked)
      return viewed_.snapshot;
  }
  return look({}, limits).snapshot;
}

void BrowserLink::lookAhead(const std::stop_token& stop) {
  // What we are doing ourselves would make the look worthless; another follows when it is done.
  if (view_->reportsChanges() && disturbances_->load() == 0)
    upToDate({std::chrono::steady_clock::now() + 5s, stop});
}

void BrowserLink::noteCommand(std::optional<TabID> tab) {
  const std::lock_guard lock(mutex_);
  std::erase_if(unseen_, [&](const Command& command) { return command.tab == tab; });
  unseen_.push_back({++commandsEnded_, tab});
}

ViewedBrowser BrowserLink::look(BrowserView::Extent extent, const CallLimits& limits) {
  std::uint64_t number = 0;
  std::uint64_t commands = 0;
  {
    const std::lock_guard lock(mutex_);
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
  const bool mayHold = view_->reportsChanges() && disturbances_->load() == 0;
  ViewedBrowser viewed = view_->look(extent, limits);
  addDestinations(viewed);
  const std::lock_guard lock(mutex_);
  std::erase_if(unseen_, [&](const Command& command) { return command.number <= commands; });
  if (number < viewedBy_) // a later look was faster
    return viewed;
  viewedBy_ = number;
  viewed_ = viewed;
  viewedAt_.reset();
  if (mayHold && disturbances_->load() == 0 && changes_->load() == before)
    viewedAt_ = before;
  return viewed;
}

/// A page that could not be loaded is no longer on its way for the browser, and not yet there, while the one that tells
/// so is being made. Its own events say where it is going.
void BrowserLink::addDestinations(ViewedBrowser& viewed) {
  const std::unordered_map<std::string, std::string> destinations = pages_.destinations();
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

/// The target of a tab as last seen, which holds for longer than the rest of a snapshot.
std::optional<std::string> BrowserLink::findTarget(TabID tab) {
  const std::lock_guard lock(mutex_);
  const auto found = viewed_.targets.find(tab);
  return found != viewed_.targets.end() ? std::optional(found->second) : std::nullopt;
}

std::shared_ptr<Session> BrowserLink::requirePage(TabID tab, const CallLimits& limits) {
  if (const std::optional<std::string> target = findTarget(tab); target && !target->empty()) {
    try {
      return pages_.require(*target, limits);
    } catch (const DevToolsFailure& failure) {
      if (failure.kind() != DevToolsFault::refused)
        throw;
    }
  }
  // Not seen yet, closed meanwhile, or given another page by the browser.
  const ViewedBrowser viewed = look({.isWhole = true}, limits);
  const auto found = viewed.targets.find(tab);
  if (found == viewed.targets.end())
    throw platform::failure(DriverFault::noSuchTab, std::to_string(tab));
  if (found->second.empty())
    throw platform::failure(DriverFault::refused, "the tab’s page is not loaded");
  return pages_.require(found->second, limits);
}

// ---------------------------------------------------------------------------------------------------------- pages

/// What is asked of a tab that was just made means the page it was made for, not the empty document that it begins
/// with.
void BrowserLink::awaitOpening(TabID tab, const CallLimits& callLimits) {
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  const auto isOpening = [&] {
    const std::lock_guard lock(mutex_);
    return viewed_.opening.contains(tab);
  };
  while (isOpening()) {
    const std::uint64_t before = changes_->load();
    look({.tabs = {tab}}, limits);
    if (isOpening())
      changes_->awaitOther(before, "the tab’s first page", limits);
  }
}

/// Calls `call` with the tab's page. A page that is just taking the place of another, as in a new tab, refuses for some
/// milliseconds: then the call is made again.
template <class Call>
auto BrowserLink::onPage(TabID tab, const CallLimits& limits, Call&& call) {
  const CallLimits patience = limits.within(patienceWithNewPages);
  for (;;) {
    try {
      return call(requirePage(tab, limits));
    } catch (const DevToolsFailure& failure) {
      if (failure.kind() != DevToolsFault::refused || patience.hasPassed() ||
          failure.detail().find(notActive) == std::string::npos)
        throw;
    }
    devtools::pause(newPagePollInterval, "the page is just coming", limits);
  }
}

boost::json::value BrowserLink::evaluate(TabID tab, const std::string& javascript, const CallLimits& limits) {
  if (std::optional<boost::json::value> known = jobs_.answer(javascript))
    return std::move(*known);
  if (const std::optional<PageJob> deferred = jobs_.takeDeferred(javascript)) {
    plant(tab, *deferred, limits);
    return jobs_.answer(javascript).value_or(-1);
  }
  if (const std::optional<PageJob> job = readPageJob(javascript)) {
    plant(tab, *job, limits);
    return nullptr;
  }
  const Disturbance disturbance(*this, Disturbance::Kind::evaluation);
  std::optional<devtools::Evaluation> evaluation = evaluateOnArrival(tab, javascript, limits, std::nullopt);
  if (!evaluation)
    return nullptr;
  if (!asksForResult(javascript))
    return std::move(evaluation->value);
  std::optional<PageJobOutcome> outcome = PageJobOutcome::read(evaluation->value);
  if (outcome && outcome->failure)
    platform::giveNotice(limits, *outcome->failure);
  return outcome ? std::move(outcome->answer) : std::move(evaluation->value);
}

/// Keeps the job's result where it comes at once, and the job itself where its page is still to come.
void BrowserLink::plant(TabID tab, const PageJob& job, const CallLimits& limits) {
  std::optional<std::uint64_t> heldAt;
  {
    const std::lock_guard lock(mutex_);
    if (isHeld())
      heldAt = viewedAt_;
  }
  const Disturbance disturbance(*this, Disturbance::Kind::evaluation);
  std::optional<devtools::Evaluation> evaluation;
  try {
    evaluation = evaluateOnArrival(tab, job.code, limits, patienceWithPlanting);
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::targetCrashed || !job.reloadsThePage())
      throw;
    reload(tab, limits); // the page can't do it for itself
    jobs_.keep(job, boost::json::array{""});
    return;
  }
  if (!evaluation)
    return jobs_.defer(job);
  if (evaluation->exception && evaluation->exception->find("SyntaxError") != std::string::npos)
    platform::giveNotice(limits, notBegun(*evaluation->exception));
  std::optional<PageJobOutcome> outcome = PageJobOutcome::read(evaluation->value);
  if (!outcome)
    return;
  if (outcome->failure)
    platform::giveNotice(limits, *outcome->failure);
  jobs_.keep(job, std::move(outcome->answer));
  const std::lock_guard lock(mutex_);
  if (heldAt)
    jobDone_ = {limits.stop, *heldAt + 1};
}

/// Evaluates once the page is where its navigations lead; nothing when it doesn't come, because its server is silent.
/// A run waits for that but once, so that programs which ask again and again end by their own count. `longest` bounds
/// the evaluation itself.
std::optional<devtools::Evaluation> BrowserLink::evaluateOnArrival(TabID tab, const std::string& code,
                                                                   const CallLimits& limits,
                                                                   std::optional<std::chrono::seconds> longest) {
  const CallLimits patience = visits_.patienceWith(tab, limits);
  requirePage(tab, limits);
  if (!comes(tab, limits, [&] { awaitOpening(tab, patience); }, [] { return true; }))
    return std::nullopt;
  return onPage(tab, limits, [&](const std::shared_ptr<Session>& page) -> std::optional<devtools::Evaluation> {
    const auto arrive = [&](const CallLimits& until) {
      if (visits_.settle(*page, until))
        noticeFailedLoad(*page, until);
    };
    if (!comes(tab, limits, [&] { arrive(patience); }, [&] { return page->isLeaving(); }))
      return std::nullopt;
    if (!page->answersLately()) // busy, but on its way nowhere
      arrive(limits.within(patienceWithBusyPages));
    visits_.note(page, limits.stop);
    devtools::Evaluation result = page->evaluate(code, longest ? limits.within(*longest) : limits);
    page->probe();
    if (result.exception)
      log.debug("JavaScript gave no value: {}", *result.exception);
    return result;
  });
}

/// False when `wait` outlasts the patience while `isOnItsWay`, which the run's user is told once.
bool BrowserLink::comes(TabID tab, const CallLimits& limits, const std::function<void()>& wait,
                        const std::function<bool()>& isOnItsWay) {
  try {
    wait();
    return true;
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::timedOut || limits.hasPassed())
      throw;
  }
  if (!isOnItsWay())
    return true;
  if (visits_.giveUp(tab, limits.stop))
    platform::giveNotice(
        limits, {{"Page", "notCome", {}},
                 fmt::format("The page that the tab is going to has not come in {} seconds: its server "
                             "does not answer.",
                             std::chrono::duration_cast<std::chrono::seconds>(PageVisits::longestPatience).count())});
  return false;
}

/// Gives notice of a page that is there only to say that the one meant could not be loaded.
void BrowserLink::noticeFailedLoad(Session& page, const CallLimits& limits) {
  if (!page.isErrorPage())
    return;
  const boost::json::object tree = page.call("Page.getFrameTree", {}, Session::AnsweredBy::page, limits);
  const boost::json::object& frame = tree.at("frameTree").at("frame").as_object();
  const std::string address = devtools::textOf(frame, "unreachableUrl");
  if (address.empty()) // another page has come meanwhile
    return;
  const devtools::Evaluation code = page.evaluate("document.querySelector('.error-code')?.textContent ?? ''", limits);
  const std::string reason = code.value.is_string() ? std::string(code.value.get_string()) : std::string();
  platform::giveNotice(
      limits, {{"Page", "notLoaded", {}},
               fmt::format("The page {} could not be loaded{}{}.", address, reason.empty() ? "" : ": ", reason)});
}

/// Lets a navigation that is under way come to its end, for a command that means the page it leads to. The browser
/// carries such commands out on a page that answers nothing too, and on one whose server is silent.
void BrowserLink::arrive(TabID tab, Session& page, const CallLimits& limits) {
  try {
    if (page.isLeaving())
      page.settle(Session::Answer::ever, visits_.patienceWith(tab, limits));
  } catch (const DevToolsFailure& failure) {
    const bool isLate = failure.kind() == DevToolsFault::timedOut && !limits.hasPassed();
    if (!isLate && failure.kind() != DevToolsFault::targetCrashed && failure.kind() != DevToolsFault::dialogOpen)
      throw;
  }
}

/// A command follows that makes the page leave.
void BrowserLink::leave(const std::shared_ptr<Session>& page, const CallLimits& limits) {
  visits_.note(page, limits.stop);
  page->depart();
}

TabID BrowserLink::makeTab(WindowID window, std::optional<std::size_t> index, const std::string& url,
                           const CallLimits& limits) {
  connection_->requireAnswer(limits);
  Disturbance disturbance(*this);
  const TabID tab = view_->makeTab(window, index, url, limits);
  disturbance.concerns(tab);
  return tab;
}

void BrowserLink::activateTab(TabID tab, const CallLimits& limits) {
  connection_->requireAnswer(limits);
  Disturbance disturbance(*this);
  disturbance.concerns(tab);
  view_->activateTab(tab, limits);
}

void BrowserLink::navigate(TabID tab, const std::string& url, const CallLimits& callLimits) {
  if (isJavaScript(url)) {
    // The page itself is the only one that may follow such an address.
    evaluate(tab, fmt::format("void (location.href = {})", boost::json::serialize(boost::json::string(url))),
             callLimits);
    return;
  }
  connection_->requireAnswer(callLimits);
  Disturbance disturbance(*this);
  disturbance.concerns(tab);
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  // The browser answers when the page is there, which may take for ever; but it takes calls up in order, so the answer
  // to the next one tells that this one has begun, and a refusal would have come before it.
  onPage(tab, limits, [&](const std::shared_ptr<Session>& page) {
    leave(page, limits);
    const auto navigation = page->send("Page.navigate", {{"url", url}}, Session::AnsweredBy::browser);
    page->call("Page.getNavigationHistory", {}, Session::AnsweredBy::browser, limits);
    if (navigation->hasEnded())
      navigation->result(limits);
  });
}

/// By the entries themselves: the browser's own way back leaves out pages on which the user has done nothing.
void BrowserLink::goInHistory(TabID tab, BrowserDriver::History direction, const CallLimits& limits) {
  connection_->requireAnswer(limits);
  Disturbance disturbance(*this);
  disturbance.concerns(tab);
  const std::shared_ptr<Session> page = requirePage(tab, limits);
  arrive(tab, *page, limits); // the entries count from where the page is
  const boost::json::object history = page->call("Page.getNavigationHistory", {}, Session::AnsweredBy::browser, limits);
  const boost::json::array& entries = history.at("entries").as_array();
  const std::int64_t step = direction == BrowserDriver::History::back ? -1 : 1;
  const std::int64_t place = history.at("currentIndex").to_number<std::int64_t>() + step;
  if (place < 0 || place >= static_cast<std::int64_t>(entries.size()))
    return; // as with the browser's own buttons
  leave(page, limits);
  page->call("Page.navigateToHistoryEntry", {{"entryId", entries[static_cast<std::size_t>(place)].at("id")}},
             Session::AnsweredBy::browser, limits);
}

void BrowserLink::reload(TabID tab, const CallLimits& limits) {
  connection_->requireAnswer(limits);
  Disturbance disturbance(*this);
  disturbance.concerns(tab);
  const std::shared_ptr<Session> page = requirePage(tab, limits);
  arrive(tab, *page, limits);
  leave(page, limits);
  page->call("Page.reload", {}, Session::AnsweredBy::browser, limits);
}

void BrowserLink::stopLoading(TabID tab, const CallLimits& limits) {
  Disturbance disturbance(*this);
  disturbance.concerns(tab);
  requirePage(tab, limits)->call("Page.stopLoading", {}, Session::AnsweredBy::browser, limits);
}

// ---------------------------------------------------------------------------------------------------------- windows

void BrowserLink::closeWindow(WindowID window, const CallLimits& limits) {
  connection_->requireAnswer(limits);
  const Disturbance disturbance(*this);
  try {
    view_->closeWindow(window, limits);
  } catch (const DriverFailure& failure) {
    if (failure.kind() != DriverFault::noSuchWindow || !closeDeveloperTools(window, limits))
      throw;
  }
}

/// The helper sees windows of developer tools, but may not close them.
bool BrowserLink::closeDeveloperTools(WindowID window, const CallLimits& limits) {
  const boost::json::object reply =
      connection_->call("Target.getTargets", {{"filter", boost::json::array{boost::json::object{}}}}, {}, limits);
  for (const boost::json::value& info : reply.at("targetInfos").as_array()) {
    if (info.at("type").as_string() == "tab" || !info.at("url").as_string().starts_with("devtools:"))
      continue;
    const boost::json::value& target = info.at("targetId");
    const devtools::PendingCall::Answer answer = connection_->send("Browser.getWindowForTarget", {{"targetId", target}})
                                                     ->await(platform::boundedBy(limits, 30s));
    if (answer && answer->at("windowId").to_number<WindowID>() == window) {
      connection_->call("Target.closeTarget", {{"targetId", target}}, {}, limits);
      return true;
    }
  }
  return false;
}

void BrowserLink::setBounds(WindowID window, WindowBounds bounds, const CallLimits& limits) {
  connection_->requireAnswer(limits);
  const Disturbance disturbance(*this);
  changeWindow(window, {{"left", bounds.left}, {"top", bounds.top}, {"width", bounds.width}, {"height", bounds.height}},
               limits);
}

void BrowserLink::setShape(WindowID window, BrowserDriver::WindowShape shape, const CallLimits& limits) {
  connection_->requireAnswer(limits);
  const Disturbance disturbance(*this);
  switch (shape) {
  case BrowserDriver::WindowShape::normal:
    return changeWindow(window, {}, limits);
  case BrowserDriver::WindowShape::minimized:
    return changeWindow(window, {{"windowState", "minimized"}}, limits);
  case BrowserDriver::WindowShape::fullScreen:
    return changeWindow(window, {{"windowState", "fullscreen"}}, limits);
  }
}

/// Every change of a window's shape or place starts from its normal state: the browser takes no other way. On a desktop
/// the way back to normal takes the window manager a moment, during which the browser still refuses.
void BrowserLink::changeWindow(WindowID window, boost::json::object bounds, const CallLimits& callLimits) {
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  constexpr int attempts = 50;
  for (int attempt = 1;; ++attempt) {
    const auto restored =
        connection_->send("Browser.setWindowBounds", {{"windowId", window}, {"bounds", {{"windowState", "normal"}}}});
    const auto changed = bounds.empty()
                             ? restored
                             : connection_->send("Browser.setWindowBounds", {{"windowId", window}, {"bounds", bounds}});
    devtools::PendingCall::Answer answer = restored->await(limits);
    if (answer && !bounds.empty())
      answer = changed->await(limits);
    if (answer)
      return;
    if (answer.error().message.find("not found") != std::string::npos)
      throw platform::failure(DriverFault::noSuchWindow, std::to_string(window));
    if (answer.error().message.find("normal") == std::string::npos || attempt >= attempts)
      throw platform::failure(DriverFault::refused, answer.error().message);
    devtools::pause(20ms, "the window to become normal", limits);
  }
}

void BrowserLink::quit(const CallLimits& callLimits) {
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  try {
    connection_->call("Browser.close", {}, {}, limits);
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::lost) // it may end before it answers
      throw;
  }
  switch (platform::waitForExit(browser_.process, limits)) {
  case platform::ProcessExit::ended:
    return;
  case platform::ProcessExit::timedOut:
    throw platform::failure(DriverFault::timedOut);
  case platform::ProcessExit::stopped:
    throw platform::failure(DriverFault::stopped);
  }
}

} // namespace tabwright::scripting
