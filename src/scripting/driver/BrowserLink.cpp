// Commands are of three kinds: those of the view, those of the road, and those made of others. Each is a Disturbance
// while it lasts, so that no snapshot taken meanwhile is held for later. The page is asked last: a question about a
// page job is answered from the result that came along when the job was planted, where there is one.
#include "scripting/driver/BrowserLink.h"

#include "platform/AsciiCase.h"

#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <chrono>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using namespace std::chrono_literals;

namespace {

constexpr auto patienceWithPlanting = 10s; // which takes a page a tenth of a second, unless its code keeps it busy

/// True for an address that names code to run in the page (the "javascript" scheme, compared ignoring case).
bool isJavaScript(const std::string& url) {
  constexpr std::string_view scheme = "javascript:";
  return platform::equalIgnoringCase(std::string_view(url).substr(0, scheme.size()), scheme);
}

template <class Command, class Variant>
constexpr bool isOneOf = false;
template <class Command, class... Commands>
constexpr bool isOneOf<Command, std::variant<Commands...>> = (std::is_same_v<Command, Commands> || ...);

/// The tab of a command that changes nothing but this tab; nothing for others.
template <class Command>
std::optional<TabID> onlyTabOf(const Command& command) {
  if constexpr (isOneOf<Command, RoadCommand> && requires { command.tab; })
    return command.tab;
  else
    return std::nullopt;
}

} // namespace

BrowserLink::BrowserLink(platform::RunningBrowser browser, std::unique_ptr<BrowserRoad> road, LooksAhead looksAhead,
                         const CallLimits& limits)
    : browser_(std::move(browser)), road_(std::move(road)),
      seen_([this] { return road_->destinations(); }, looksAhead,
            [&](std::function<void()> onChange) { return road_->makeView(std::move(onChange), limits); }) {
  road_->use(seen_);
}

BrowserLink::~BrowserLink() = default;

std::shared_ptr<const BrowserSnapshot> BrowserLink::snapshot(const CallLimits& limits) {
  if (road_->settleOthers(limits))
    seen_.noteChange(); // the browser has told us of them, but the helper may not have yet
  return seen_.snapshot(limits);
}

std::optional<devtools::Evaluation> BrowserLink::evaluateInPage(TabID tab, const std::string& code,
                                                                const CallLimits& limits,
                                                                std::optional<std::chrono::seconds> longest) {
  const Disturbance disturbance(seen_, Disturbance::Kind::evaluation);
  return road_->evaluate(tab, code, limits, longest);
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
  const Disturbance disturbance(seen_, Disturbance::Kind::evaluation);
  std::optional<devtools::Evaluation> evaluation = road_->evaluate(tab, javascript, limits, std::nullopt);
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
  const std::optional<std::uint64_t> heldAt = seen_.heldAt();
  const Disturbance disturbance(seen_, Disturbance::Kind::evaluation);
  std::optional<devtools::Evaluation> evaluation;
  try {
    evaluation = road_->evaluate(tab, job.code, limits, patienceWithPlanting);
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
    seen_.noteJobDone(limits.stop, *heldAt);
}

// ------------------------------------------------------------------------------------------------------- commands

std::int64_t BrowserLink::perform(const BrowserCommand& command, const CallLimits& limits) {
  return dispatch(command, [&](const auto& each) { return carryOut(each, limits); });
}

SeenBrowser::Disturbance BrowserLink::begin(const CallLimits& limits, std::optional<TabID> tab) {
  road_->requireAnswer(limits);
  return {seen_, Disturbance::Kind::command, tab};
}

template <class Command>
std::int64_t BrowserLink::carryOut(const Command& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits, onlyTabOf(command));
  if constexpr (isOneOf<Command, RoadCommand>)
    return road_->perform(command, limits);
  else
    return seen_.view().perform(command, limits);
}

TabID BrowserLink::carryOut(const MakeTab& command, const CallLimits& limits) {
  Disturbance disturbance = begin(limits);
  const TabID tab = seen_.view().perform(command, limits);
  // The next look asks for this tab by name: news alone may not have it yet.
  disturbance.concerns(tab);
  return tab;
}

void BrowserLink::carryOut(const ActivateTab& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits, command.tab);
  seen_.view().perform(command, limits);
}

void BrowserLink::carryOut(const Navigate& command, const CallLimits& limits) {
  if (isJavaScript(command.url)) {
    // The page itself is the only one that may follow such an address.
    evaluate(command.tab,
             fmt::format("void (location.href = {})", boost::json::serialize(boost::json::string(command.url))),
             limits);
    return;
  }
  const Disturbance disturbance = begin(limits, command.tab);
  road_->perform(command, limits);
}

std::int64_t BrowserLink::carryOut(const PlayKeys& command, const CallLimits& limits) {
  // Keys change the browser only through the page, whose changes the browser reports.
  const Disturbance disturbance(seen_, Disturbance::Kind::evaluation);
  return road_->perform(command, limits);
}

void BrowserLink::carryOut(const CloseWindow& command, const CallLimits& limits) {
  const Disturbance disturbance = begin(limits);
  try {
    seen_.view().perform(command, limits);
  } catch (const DriverFailure& failure) {
    // The view lists developer tools but may not close them.
    if (failure.kind() != DriverFault::noSuchWindow || !road_->closeDeveloperTools(command.window, limits))
      throw;
  }
}

void BrowserLink::carryOut(const Activate& /*command*/, const CallLimits& limits) {
  const std::shared_ptr<const BrowserSnapshot> seen = snapshot(limits);
  if (!seen->windows.empty())
    carryOut(RaiseWindow{seen->windows.front().id}, limits);
}

void BrowserLink::carryOut(const ShowControls& command, const CallLimits& limits) {
  road_->perform(command, limits);
}

/// A browser that is frozen may still take the call, and end when it goes on, which is what was asked for.
void BrowserLink::carryOut(const Quit& command, const CallLimits& limits) {
  road_->perform(command, limits);
}

} // namespace tabwright::scripting
