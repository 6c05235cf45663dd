// Navigations begin with the browser's word that they have, not with the page: its answer may take for ever. Before a
// command that means the page that the tab is going to, that page is waited for; after one that makes the page leave,
// the next run waits for where it leads.
#include "scripting/driver/ProtocolRoad.h"

#include "platform/Logger.h"
#include "scripting/driver/HelperView.h"
#include "scripting/driver/HelperWorker.h"
#include "scripting/driver/KeyEvents.h"
#include "scripting/driver/ProtocolView.h"
#include "scripting/driver/ProtocolWindows.h"

#include <chrono>
#include <utility>
#include <vector>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using devtools::Session;
using platform::JSONReader;

namespace {

const platform::Logger roadLog("ProtocolRoad");

/// "156.0.8078.79" of "HeadlessChrome/156.0.8078.79".
std::string versionOf(const boost::json::value& reply) {
  const auto product = JSONReader(reply).require<std::string>("product");
  return product.substr(product.find('/') + 1);
}

} // namespace

ProtocolRoad::ProtocolRoad(const platform::RunningBrowser& browser, const devtools::Endpoint& endpoint,
                           std::filesystem::path helperDirectory, const CallLimits& limits)
    : browser_(browser), helperDirectory_(std::move(helperDirectory)),
      connection_(devtools::Connection::open(endpoint, limits)), pages_(connection_), controls_(connection_) {}

std::unique_ptr<BrowserView> ProtocolRoad::makeView(std::function<void()> onChange, const CallLimits& limits) {
  // Sent first and read last: the answer is on its way while the helper is prepared.
  const auto version = connection_->send("Browser.getVersion", {});
  try {
    auto worker = std::make_unique<HelperWorker>(connection_, HelperPlace{helperDirectory_, browser_.profileDirectory},
                                                 std::move(onChange));
    worker->prepare(limits);
    return std::make_unique<HelperView>(std::move(worker), versionOf(version->result(limits)));
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::refused)
      throw;
    roadLog.error("The browser takes no helper, so the order of windows and tabs is a guess: {}", failure.detail());
    return std::make_unique<ProtocolView>(connection_, pages_, versionOf(version->result(limits)));
  }
}

void ProtocolRoad::use(SeenBrowser& seen) {
  tabs_ = std::make_unique<TabPages>(*connection_, pages_, visits_, seen);
}

std::optional<devtools::Evaluation> ProtocolRoad::evaluate(TabID tab, const std::string& code, const CallLimits& limits,
                                                           std::optional<std::chrono::seconds> longest) {
  return tabs_->evaluateOnArrival(tab, code, limits, longest);
}

std::int64_t ProtocolRoad::perform(const RoadCommand& command, const CallLimits& limits) {
  return dispatch(command, [&](const auto& each) { return carryOut(each, limits); });
}

void ProtocolRoad::carryOut(const Navigate& command, const CallLimits& callLimits) {
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
void ProtocolRoad::carryOut(const GoInHistory& command, const CallLimits& limits) {
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

void ProtocolRoad::carryOut(const Reload& command, const CallLimits& limits) {
  const std::shared_ptr<Session> page = tabs_->require(command.tab, limits);
  tabs_->arrive(command.tab, *page, limits);
  tabs_->leave(page, limits);
  page->call("Page.reload", {}, Session::AnsweredBy::browser, limits);
}

void ProtocolRoad::carryOut(const StopLoading& command, const CallLimits& limits) {
  tabs_->require(command.tab, limits)->call("Page.stopLoading", {}, Session::AnsweredBy::browser, limits);
}

std::int64_t ProtocolRoad::carryOut(const PlayKeys& command, const CallLimits& callLimits) {
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  const std::shared_ptr<Session> page = tabs_->require(command.tab, limits);
  return playKeys(*page, command, limits) ? 1 : 0;
}

void ProtocolRoad::carryOut(const SetBounds& command, const CallLimits& limits) {
  setBounds(*connection_, command, limits);
}

void ProtocolRoad::carryOut(const SetShape& command, const CallLimits& limits) {
  setShape(*connection_, command, limits);
}

void ProtocolRoad::carryOut(const ShowControls& /*command*/, const CallLimits& limits) {
  controls_.show(limits);
}

bool ProtocolRoad::closeDeveloperTools(WindowID window, const CallLimits& limits) {
  return scripting::closeDeveloperTools(*connection_, window, limits);
}

void ProtocolRoad::carryOut(const Quit& /*command*/, const CallLimits& callLimits) {
  const CallLimits limits = platform::boundedBy(callLimits, connection_->bounds().call);
  try {
    connection_->call("Browser.close", {}, {}, limits);
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::lost) // it may end before it answers
      throw;
  }
  requireEnded(platform::waitForExit(browser_.process, limits));
}

} // namespace tabwright::scripting
