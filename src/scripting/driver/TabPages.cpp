// An evaluation waits for three things in turn: the tab's first page, the end of the page's navigations, and a page
// that is busy. The first two share one patience of the run's (PageVisits), after which the caller gets nothing and the
// run a notice. Only then the code goes to the page, and a probe behind it, whose answer tells the next run that all
// navigations have been told of.
#include "scripting/driver/TabPages.h"

#include "platform/Logger.h"

#include <fmt/core.h>

#include <string_view>

namespace tabwright::scripting {

using devtools::DevToolsFailure;
using devtools::DevToolsFault;
using devtools::Session;
using platform::JSONReader;

namespace {

const platform::Logger pagesLog("TabPages");

constexpr std::chrono::seconds patienceWithBusyPages{20}; // beside that with pages on their way

/// Gives notice of a page that is there only to say that the one meant could not be loaded.
void noticeFailedLoad(Session& page, const CallLimits& limits) {
  if (!page.isErrorPage())
    return;
  const boost::json::value tree = page.call("Page.getFrameTree", {}, Session::AnsweredBy::page, limits);
  const auto frame = JSONReader(tree).require<JSONReader>("frameTree").require<JSONReader>("frame");
  const auto address = frame.find<std::string>("unreachableUrl");
  if (!address) // another page has come meanwhile
    return;
  // The element of Chromium's error page that has the network error's name.
  const devtools::Evaluation code = page.evaluate("document.querySelector('.error-code')?.textContent ?? ''", limits);
  const std::string reason = code.value.is_string() ? std::string(code.value.get_string()) : std::string();
  platform::giveNotice(
      limits, {{"Page", "notLoaded", {}},
               fmt::format("The page {} could not be loaded{}{}.", *address, reason.empty() ? "" : ": ", reason)});
}

} // namespace

std::shared_ptr<Session> TabPages::require(TabID tab, const CallLimits& limits) {
  if (const std::optional<std::string> target = seen_.findTarget(tab); target && !target->empty()) {
    try {
      return pages_.require(*target, limits);
    } catch (const DevToolsFailure& failure) {
      if (failure.kind() != DevToolsFault::refused)
        throw;
    }
  }
  // Not seen yet, closed meanwhile, or given another page by the browser.
  const ViewedBrowser viewed = seen_.look({.isWhole = true}, limits);
  const auto found = viewed.targets.find(tab);
  if (found == viewed.targets.end())
    throw platform::failure(DriverFault::noSuchTab, std::to_string(tab));
  if (found->second.empty())
    throw platform::failure(DriverFault::refused, "the tab’s page is not loaded");
  return pages_.require(found->second, limits);
}

bool TabPages::isComing(const DevToolsFailure& failure) {
  constexpr std::string_view notActive = "Not attached to an active page"; // the browser's words
  return failure.kind() == DevToolsFault::refused && failure.detail().find(notActive) != std::string::npos;
}

std::optional<devtools::Evaluation> TabPages::evaluateOnArrival(TabID tab, const std::string& code,
                                                                const CallLimits& limits,
                                                                std::optional<std::chrono::seconds> longest) {
  const CallLimits patience = visits_.patienceWith(tab, limits);
  // Throws for a tab that isn't there, and has one seen that wasn't: the wait below goes by what was seen.
  require(tab, limits);
  if (!comes(
          tab, limits, [&] { seen_.awaitFirstPage(tab, platform::boundedBy(patience, connection_.bounds().call)); },
          [] { return true; }))
    return std::nullopt;
  return with(tab, limits, [&](const std::shared_ptr<Session>& page) -> std::optional<devtools::Evaluation> {
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
      pagesLog.debug("JavaScript gave no value: {}", *result.exception);
    return result;
  });
}

/// False when `wait` outlasts the patience while `isOnItsWay`, which the run's user is told once.
bool TabPages::comes(TabID tab, const CallLimits& limits, const std::function<void()>& wait,
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
  visits_.giveUp(tab, limits);
  return false;
}

void TabPages::arrive(TabID tab, Session& page, const CallLimits& limits) {
  try {
    if (page.isLeaving())
      page.settle(Session::Answer::ever, visits_.patienceWith(tab, limits));
  } catch (const DevToolsFailure& failure) {
    // The command does without the page's arrival; only the caller's own deadline ends it.
    const bool isLate = failure.kind() == DevToolsFault::timedOut && !limits.hasPassed();
    if (!isLate && failure.kind() != DevToolsFault::targetCrashed && failure.kind() != DevToolsFault::dialogOpen)
      throw;
  }
}

void TabPages::leave(const std::shared_ptr<Session>& page, const CallLimits& limits) {
  visits_.note(page, limits.stop);
  page->depart();
}

} // namespace tabwright::scripting
