// The helper waits for a page that is on its way before it evaluates in it, since only it hears of that at once; how
// long, and what is made of a page that doesn't come, is decided here. Behind each evaluation it sends a probe, and
// tells when that was answered: then all navigations have been told of that the code has begun, and the next run need
// not ask.
#include "scripting/driver/HelperRoad.h"

#include "devtools/DevToolsFault.h"
#include "platform/JSONReader.h"
#include "platform/Logger.h"
#include "scripting/driver/BrowserLink.h"
#include "scripting/driver/HelperView.h"
#include "scripting/driver/SeenBrowser.h"

#include <fmt/core.h>

#include <algorithm>
#include <csignal>
#include <set>
#include <utility>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using platform::JSONReader;
using Repeat = HelperCalls::Repeat;
using namespace std::chrono_literals;

namespace {

const platform::Logger roadLog("HelperRoad");

constexpr std::size_t mostEarly = 64;
// For all pages together that one look waits for.
constexpr auto patienceOfLooks = 3s;
// A document that takes longer to parse counts as there.
constexpr auto patienceWithParsing = 1s;
// A browser without windows ends by itself, but for one that has no display.
constexpr auto patienceWithEnd = 2s;

/// "156.0.8078.108" of "Chromium 156.0.8078.108".
std::string versionOf(const std::string& browser) {
  return browser.substr(browser.rfind(' ') + 1);
}

} // namespace

/// The function to call for each change, from the moment that there is a view; and the tabs that runs have been in.
struct HelperRoad::Heard {
  platform::Mutex mutex;
  std::function<void()> onChange GUARDED_BY(mutex);
  std::vector<Visit> visits GUARDED_BY(mutex);    // at most one to each tab, the last
  std::set<std::int64_t> early GUARDED_BY(mutex); // probes that were answered before the evaluation was

  void changed() {
    const platform::MutexLock lock(mutex);
    if (onChange)
      onChange();
  }

  void settled(std::int64_t probe) {
    const platform::MutexLock lock(mutex);
    const auto visit = std::ranges::find(visits, probe, &Visit::probe);
    if (visit != visits.end())
      visit->probe = 0;
    else
      early.insert(probe);
    if (early.size() > mostEarly)
      early.erase(early.begin());
  }
};

HelperDescription describeHelper(HelperCalls& helper, const CallLimits& limits) {
  const boost::json::value answer = helper.perform("describe", {}, Repeat::allowed, limits);
  const JSONReader fields(answer, "helper");
  return {.helperVersion = fields.require<std::string>("helper"),
          .browserVersion = versionOf(fields.require<std::string>("browser")),
          .mayRunScripts = fields.require<bool>("userScripts"),
          .seesPrivateWindows = fields.require<bool>("incognito"),
          .readsFiles = fields.require<bool>("files"),
          .profile = fields.require<std::string>("profile")};
}

HelperRoad::HelperRoad(const platform::RunningBrowser& browser, const RelayPlace& relay, FindPort findPort,
                       const CallLimits& limits)
    : browser_(browser), findPort_(std::move(findPort)), heard_(std::make_shared<Heard>()),
      helper_(RelayConnection::open(relay, browser,
                                    {.changed = [heard = heard_] { heard->changed(); },
                                     .settled = [heard = heard_](std::int64_t probe) { heard->settled(probe); }},
                                    limits)),
      description_(describeHelper(*helper_, limits)) {}

HelperRoad::~HelperRoad() = default;

devtools::Traffic HelperRoad::traffic() const {
  return {.sent = helper_->sent(), .received = helper_->received()};
}

std::unique_ptr<BrowserView> HelperRoad::makeView(std::function<void()> onChange, const CallLimits& /*limits*/) {
  {
    const platform::MutexLock lock(heard_->mutex);
    heard_->onChange = std::move(onChange);
  }
  return std::make_unique<HelperView>(helper_, description_.browserVersion);
}

// -------------------------------------------------------------------------------------------------------------- pages

bool HelperRoad::noteVisit(TabID tab, const CallLimits& limits) {
  const platform::MutexLock lock(heard_->mutex);
  bool isUnknown = false;
  std::erase_if(heard_->visits, [&](const Visit& visit) {
    isUnknown = isUnknown || (visit.tab == tab && visit.probe != 0 && !isSameRun(visit.run, limits.stop));
    return visit.tab == tab;
  });
  heard_->visits.push_back({.tab = tab, .run = limits.stop});
  return isUnknown;
}

void HelperRoad::noteProbe(TabID tab, std::int64_t probe) {
  const platform::MutexLock lock(heard_->mutex);
  const auto visit = std::ranges::find(heard_->visits, tab, &Visit::tab);
  if (heard_->early.erase(probe) == 0 && visit != heard_->visits.end())
    visit->probe = probe;
}

/// Changes come on the connection before the answer that is waited for, so what was seen before them isn't held.
bool HelperRoad::settleOthers(const CallLimits& limits) {
  std::vector<Visit> others;
  {
    const platform::MutexLock lock(heard_->mutex);
    // Taken out before the waits, so that each is waited for once, whoever looks next.
    std::vector<Visit> own;
    for (Visit& visit : heard_->visits)
      (isSameRun(visit.run, limits.stop) ? own : others).push_back(std::move(visit));
    heard_->visits = std::move(own);
  }
  boost::json::array unknown;
  for (const Visit& visit : others) {
    if (visit.probe != 0)
      unknown.push_back(visit.tab);
  }
  if (!unknown.empty())
    helper_->perform("settle", {{"tabs", unknown}}, Repeat::allowed, limits);
  const CallLimits arrival = limits.within(patienceOfLooks);
  const CallLimits parsing = limits.within(patienceWithParsing);
  for (const Visit& visit : others) {
    seen_->awaitTab(visit.tab, arrival, [](const TabState& tab) { return !tab.isArriving; });
    seen_->awaitTab(visit.tab, parsing, [](const TabState& tab) { return !tab.isLoading; });
  }
  return false; // the waits have looked
}

std::optional<devtools::Evaluation> HelperRoad::evaluate(TabID tab, const std::string& code, const CallLimits& limits,
                                                         std::optional<std::chrono::seconds> longest) {
  const std::int64_t patience = patienceWith(tab, limits);
  const bool settles = noteVisit(tab, limits);
  const boost::json::object parameters{{"tab", tab}, {"code", code}, {"patience", patience}, {"settles", settles}};
  const CallLimits bounded = longest ? limits.within(std::chrono::milliseconds(patience) + *longest) : limits;
  const boost::json::value answer = helper_->perform("evaluate", parameters, Repeat::never, bounded);
  const JSONReader outcome(answer, "helper");
  if (const auto probe = outcome.find<std::int64_t>("probe"))
    noteProbe(tab, *probe);
  if (outcome.find<bool>("late").value_or(false)) {
    visits_.giveUp(tab, limits);
    return std::nullopt;
  }
  if (const auto reason = outcome.find<std::string>("kept")) {
    if (const std::shared_ptr<BrowserLink> port = findPort_(limits))
      return port->evaluateInPage(tab, code, limits, longest);
    if (const auto address = outcome.find<std::string>("unloaded"))
      platform::giveNotice(limits,
                           {{"Page", "notLoaded", {}}, fmt::format("The page {} could not be loaded.", *address)});
    else if (longest) // a page job would say only that it found nothing
      platform::giveNotice(limits, {{"Page", "kept", {}},
                                    fmt::format("The browser keeps this page to itself, so it counts as empty: {} Its "
                                                "debugging port reaches all pages.",
                                                *reason)});
    return devtools::Evaluation{
        .value = helper_->perform("evaluateInEmptyDocument", parameters, Repeat::never, bounded), .exception = {}};
  }
  const boost::json::value* value = outcome.object().if_contains("value");
  devtools::Evaluation evaluation{.value = value != nullptr ? *value : boost::json::value(), .exception = {}};
  // The browser says nothing of an exception. A page job catches all but those of its own text.
  if (longest && evaluation.value.is_null()) {
    const boost::json::value fault = helper_->perform("syntaxFault", {{"code", code}}, Repeat::allowed, bounded);
    if (fault.is_string())
      evaluation.exception = std::string(fault.get_string());
  }
  return evaluation;
}

// ----------------------------------------------------------------------------------------------------------- commands

std::int64_t HelperRoad::perform(const RoadCommand& command, const CallLimits& limits) {
  return dispatch(command, [&](const auto& each) { return carryOut(each, limits); });
}

void HelperRoad::carryOut(const Navigate& command, const CallLimits& limits) {
  helper_->perform("navigate", {{"tab", command.tab}, {"url", command.url}}, Repeat::never, limits);
  noteVisit(command.tab, limits);
}

void HelperRoad::carryOut(const GoInHistory& command, const CallLimits& limits) {
  helper_->perform("goInHistory",
                   {{"tab", command.tab},
                    {"step", command.direction == History::back ? -1 : 1},
                    {"patience", patienceWith(command.tab, limits)}},
                   Repeat::never, limits);
  noteVisit(command.tab, limits);
}

void HelperRoad::carryOut(const Reload& command, const CallLimits& limits) {
  helper_->perform("reload", {{"tab", command.tab}, {"patience", patienceWith(command.tab, limits)}}, Repeat::never,
                   limits);
  noteVisit(command.tab, limits);
}

void HelperRoad::carryOut(const StopLoading& command, const CallLimits& limits) {
  try {
    helper_->perform("stopLoading", {{"tab", command.tab}}, Repeat::allowed, limits);
  } catch (const DriverFailure& failure) {
    const std::shared_ptr<BrowserLink> port = failure.kind() == DriverFault::refused ? findPort_(limits) : nullptr;
    if (!port)
      throw;
    port->perform(command, limits);
  }
}

/// A page in a window gets its keys from the display.
std::int64_t HelperRoad::carryOut(const PlayKeys& command, const CallLimits& limits) {
  if (!browser_.isHeadless)
    return 0;
  return requirePort("keys reach a browser without windows only by its debugging port", limits)
      ->perform(command, limits);
}

void HelperRoad::carryOut(const SetBounds& command, const CallLimits& limits) {
  const WindowBounds& bounds = command.bounds;
  helper_->perform("setBounds",
                   {{"window", command.window},
                    {"bounds", boost::json::array{bounds.left, bounds.top, bounds.width, bounds.height}}},
                   Repeat::allowed, limits);
}

void HelperRoad::carryOut(const SetShape& command, const CallLimits& limits) {
  // Names of chrome.windows.WindowState.
  const char* state = command.shape == WindowShape::minimized    ? "minimized"
                      : command.shape == WindowShape::fullScreen ? "fullscreen"
                                                                 : "normal";
  helper_->perform("setShape", {{"window", command.window}, {"state", state}}, Repeat::allowed, limits);
}

void HelperRoad::carryOut(const ShowControls& command, const CallLimits& limits) {
  requirePort("its own controls are shown only by its debugging port", limits)->perform(command, limits);
}

/// Windows are closed as the user would, so pages may ask before they go. Where all are gone and the process isn't, it
/// is told to end by the signal by which a session's end tells it.
void HelperRoad::carryOut(const Quit& /*command*/, const CallLimits& callLimits) {
  const CallLimits limits = platform::boundedBy(callLimits, 30s);
  bool isEmpty = true;
  try {
    isEmpty = helper_->perform("closeAllWindows", {}, Repeat::never, limits) == boost::json::value(true);
  } catch (const DevToolsFailure& failure) {
    if (failure.kind() != DevToolsFault::lost) // it may end before it answers
      throw;
  }
  platform::ProcessExit exit =
      platform::waitForExit(browser_.process, isEmpty ? limits.within(patienceWithEnd) : limits);
  if (exit == platform::ProcessExit::timedOut && isEmpty && !limits.hasPassed()) {
    roadLog.debug("Process {} goes on without windows and is told to end.", browser_.process);
    ::kill(browser_.process, SIGTERM);
    exit = platform::waitForExit(browser_.process, limits);
  }
  requireEnded(exit);
}

std::int64_t HelperRoad::patienceWith(TabID tab, const CallLimits& limits) {
  const auto patience = visits_.patienceWith(tab, limits).deadline - limits.now();
  return std::max<std::int64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(patience).count(), 0);
}

std::shared_ptr<BrowserLink> HelperRoad::requirePort(const char* without, const CallLimits& limits) {
  if (std::shared_ptr<BrowserLink> port = findPort_(limits))
    return port;
  throw platform::failure(DriverFault::refused, without);
}

} // namespace tabwright::scripting
