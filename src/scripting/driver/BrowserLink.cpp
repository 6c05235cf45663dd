// Commands are of three kinds: those of the view; those that the DevTools Protocol carries out for every browser alike
// (navigations, keys, bounds and shapes); and those made of others. Each is a Disturbance while it lasts, so that no
// snapshot taken meanwhile is held for later. The page is asked last: a question about a page job is answered from the
// result that came along when the job was planted, where there is one.
#include "scripting/driver/BrowserLink.h"

#include "platform/AsciiCase.h"
#include "platform/Logger.h"
#include "platform/linux/ProcessExit.h"
#include "scripting/driver/HelperView.h"
#include "scripting/driver/KeyEvents.h"
#include "scripting/driver/ProtocolView.h"
#include "scripting/driver/ProtocolWindows.h"

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
using platform::JSONReader;
using namespace std::chrono_literals;

namespace {

const platform::Logger linkLog("BrowserLink");

constexpr auto patienceWithPlanting = 10s; // which takes a page a tenth of a second, unless its code keeps it busy

/// "156.0.8078.79" of "HeadlessChrome/156.0.8078.79".
std::string versionOf(const boost::json::value& reply) {
  const auto product = JSONReader(reply).require<std::string>("product");
  return product.substr(product.find('/') + 1);
}

/// True for an address that names code to run in the page (the "javascript" scheme, compared ignoring case).
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
  link->seen_ = std::make_unique<SeenBrowser>(link->pages_, looksAhead, [&](std::function<void()> onChange) {
    return link->makeView(helperDirectory, std::move(onChange), limits);
  });
  link->tabs_ = std::make_unique<TabPages>(*link->connection_, link->pages_, link->visits_, *link->seen_);
  return link;
}

std::unique_ptr<BrowserView> BrowserLink::makeView(const std::filesystem::path& helperDirectory,
                                                   std::function<void()> onChange, const CallLimits& limits) {
  // Sent first and read last: the answer is on its way while the helper is prepared.
  const auto version = connection_->send("Browser.getVersion", {});
  try {
    auto worker = std::make_unique<HelperWorker>(connection_, HelperPlace{helperDirectory, browser_.profileDirectory},
                                                 std::move(onChange));
    worker->prepare(limits);
    return std::make_unique<HelperView>(std::move(worker), versionOf(version->result(limits)));
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::refused)
      throw;
    linkLog.error("The browser takes no helper, so the order of windows and tabs is a guess: {}", failure.detail());
    return std::make_unique<ProtocolView>(connection_, pages_, versionOf(version->result(limits)));
  }
}

BrowserLink::BrowserLink(platform::RunningBrowser browser, std::shared_ptr<devtools::Connection> connection)
    : browser_(std::move(browser)), connection_(std::move(connection)), pages_(connection_), controls_(connection_) {}

BrowserLink::~BrowserLink() = default;

std::shared_ptr<const BrowserSnapshot> BrowserLink::snapshot(const CallLimits& limits) {
  if (visits_.settleOthers(limits))
    seen_->noteChange(); // the browser has told us of them, but the helper may not have yet
  return seen_->snapshot(limits);
}

// ---------------------------------------------------------------------------------------------------------- pages

boost::json::value BrowserLink::evaluate(TabID tab, const std::string& javascript, const CallLimits& limits) {
  if (std::optional<boost::json::value> known = jobs_.answer(javascript))
    return std::move(*known);
  // The program polls for a job that was held back: its page may have come meanwhile.
  if (const std::optional<PageJob> deferred = jobs_.takeDeferred(javascript)) {
    plant(tab, *deferred, limits);
    return jobs_.answer(javascript).value_or(-1);
  }
  if (const std::optional<PageJob> job = readPageJob(javascript)) {
    plant(tab, *job, limits);
    return nullptr;
  }
  const Disturbance disturbance(*seen_, Disturbance::Kind::evaluation);
  std::optional<devtools::Evaluation> evaluation = tabs_->evaluateOnArrival(tab, javascript, limits, std::nullopt);
  if (!evaluation)
    return nullptr;
  if (!asksForResult(javascript))
    return std::move(evaluation->value);
  // Our lines leave an outcome in the result's variable, and the program expects the texts in it.
  std::optional<PageJobOutcome> outcome = PageJobOutcome::read(evaluation->value);
  if (outcome && outcome->failure)
    platform::giveNotice(limits, *outcome->failure);
  return outcome ? std::move(outcome->answer) : std::move(evaluation->value);
}

/// Keeps the job's result where it comes at once, and the job itself where its page is still to come.
void BrowserLink::plant(TabID tab, const PageJob& job, const CallLimits& limits) {
  // Before the disturbance, which lets go of what is held.
  const std::optional<std::uint64_t> heldAt = seen_->heldAt();
  const Disturbance disturbance(*seen_, Disturbance::Kind::evaluation);
  std::optional<devtools::Evaluation> evaluation;
  try {
    evaluation = tabs_->evaluateOnArrival(tab, job.code, limits, patienceWithPlanting);
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::targetCrashed || !job.reloadsThePage())
      throw;
    carryOut(Reload{tab}, limits); // the page can't do it for itself
    jobs_.keep(job, boost::json::array{""});
    return;
  }
  if (!evaluation)
    return jobs_.defer(job);
  // Nothing of the code has run, not even the line that sets the canary, so the program will say that the page has gone
  // away. The notice tells why.
  if (evaluation->exception && evaluation->exception->find("SyntaxError") != std::string::npos)
    platform::giveNotice(limits, notBegun(*evaluation->exception));
  std::optional<PageJobOutcome> outcome = PageJobOutcome::read(evaluation->value);
  if (!outcome)
    return;
  if (outcome->failure)
    platform::giveNotice(limits, *outcome->failure);
  jobs_.keep(job, std::move(outcome->answer));
  if (heldAt)
    seen_->noteJobDone(limits.stop, *heldAt);
}

// ------------------------------------------------------------------------------------------------------- commands

std::int64_t BrowserLink::perform(const BrowserCommand& command, const CallLimits& limits) {
  return dispatch(command, [&](const auto& each) { return carryOut(each, limits); });
}

SeenBrowser::Disturbance BrowserLink::begin(const CallLimits& limits, std::optional<TabID> tab) {
  connection_->requireAnswer(limits);
  return {*seen_, Disturbance::Kind::command, tab};
}

template <class Command>
std::int64_t BrowserLink::carryOut(const Command& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits);
  return seen_->view().perform(command, limits);
}

TabID BrowserLink::carryOut(const MakeTab& command, const CallLimits& limits) {
  Disturbance disturbance = begin(limits);
  const TabID tab = seen_->view().perform(command, limits);
  // The next look asks for this tab by name: news alone may not have it yet.
  disturbance.concerns(tab);
  return tab;
}

void BrowserLink::carryOut(const ActivateTab& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits, command.tab);
  seen_->view().perform(command, limits);
}

void BrowserLink::carryOut(const Navigate& command, const CallLimits& callLimits) {
  if (isJavaScript(command.url)) {
    // The page itself is the only one that may follow such an address.
    evaluate(command.tab,
             fmt::format("void (location.href = {})", boost::json::serialize(boost::json::string(command.url))),
             callLimits);
    return;
  }
  const Disturbance disturbance = begin(callLimits, command.tab);
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  // The browser answers when the page is there, which may take for ever; but it takes calls up in order, so the answer
  // to the next one tells that this one has begun, and a refusal would have come before it.
  tabs_->with(command.tab, limits, [&](const std::shared_ptr<Session>& page) {
    tabs_->leave(page, limits);
    const auto navigation = page->send("Page.navigate", {{"url", command.url}}, Session::AnsweredBy::browser);
    page->call("Page.getNavigationHistory", {}, Session::AnsweredBy::browser, limits);
    // Only a refusal is here by now, or the answer of a page that came at once.
    if (navigation->hasEnded())
      navigation->result(limits);
  });
}

/// By the entries themselves: the browser's own way back leaves out pages on which the user has done nothing.
void BrowserLink::carryOut(const GoInHistory& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits, command.tab);
  const std::shared_ptr<Session> page = tabs_->require(command.tab, limits);
  tabs_->arrive(command.tab, *page, limits); // the entries count from where the page is
  const boost::json::value reply = page->call("Page.getNavigationHistory", {}, Session::AnsweredBy::browser, limits);
  const JSONReader history(reply);
  const auto entries = history.require<std::vector<JSONReader>>("entries");
  const std::int64_t step = command.direction == History::back ? -1 : 1;
  const std::int64_t place = history.require<std::int64_t>("currentIndex") + step;
  if (place < 0 || place >= static_cast<std::int64_t>(entries.size()))
    return; // as with the browser's own buttons
  tabs_->leave(page, limits);
  const auto entry = entries[static_cast<std::size_t>(place)].require<std::int64_t>("id");
  page->call("Page.navigateToHistoryEntry", {{"entryId", entry}}, Session::AnsweredBy::browser, limits);
}

void BrowserLink::carryOut(const Reload& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits, command.tab);
  const std::shared_ptr<Session> page = tabs_->require(command.tab, limits);
  tabs_->arrive(command.tab, *page, limits);
  tabs_->leave(page, limits);
  page->call("Page.reload", {}, Session::AnsweredBy::browser, limits);
}

void BrowserLink::carryOut(const StopLoading& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits, command.tab);
  tabs_->require(command.tab, limits)->call("Page.stopLoading", {}, Session::AnsweredBy::browser, limits);
}

std::int64_t BrowserLink::carryOut(const PlayKeys& command, const CallLimits& callLimits) {
  // Keys change the browser only through the page, whose changes the browser reports.
  const Disturbance disturbance(*seen_, Disturbance::Kind::evaluation);
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  const std::shared_ptr<Session> page = tabs_->require(command.tab, limits);
  return playKeys(*page, command, limits) ? 1 : 0;
}

// ---------------------------------------------------------------------------------------------------------- windows

void BrowserLink::carryOut(const CloseWindow& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits);
  try {
    seen_->view().perform(command, limits);
  } catch (const DriverFailure& failure) {
    // The view lists developer tools but may not close them.
    if (failure.kind() != DriverFault::noSuchWindow || !closeDeveloperTools(*connection_, command.window, limits))
      throw;
  }
}

void BrowserLink::carryOut(const SetBounds& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits);
  setBounds(*connection_, command, limits);
}

void BrowserLink::carryOut(const SetShape& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits);
  setShape(*connection_, command, limits);
}

void BrowserLink::carryOut(const Activate& /*command*/, const CallLimits& limits) {
  const std::shared_ptr<const BrowserSnapshot> seen = snapshot(limits);
  if (!seen->windows.empty())
    carryOut(RaiseWindow{seen->windows.front().id}, limits);
}

void BrowserLink::carryOut(const Quit& /*command*/, const CallLimits& callLimits) {
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
