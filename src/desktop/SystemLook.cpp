#include "desktop/SystemLook.h"

#include "app/BrowserLauncher.h"
#include "app/BrowserReach.h"
#include "platform/DesktopFault.h"
#include "shell/WindowText.h"
#include "targets/SupportedBrowsers.h"

#include <unicode/listformatter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

namespace tabwright::desktop {
namespace {

constexpr std::chrono::milliseconds lookPatience{800};
constexpr std::chrono::seconds busPatience{2};

std::string conditionOf(const platform::BrowserFacts& facts, const app::BrowserReach& reach) {
  switch (reach.kind) {
  case app::BrowserReach::Kind::drivable:
    return shell::windowText("linux.browser.drivable", {facts.name});
  case app::BrowserReach::Kind::scriptsForbidden:
    return shell::windowText("linux.browser.scriptsForbidden", {facts.name, std::string(facts.shortName)});
  case app::BrowserReach::Kind::silent:
    return shell::windowText("linux.browser.silent", {facts.name});
  case app::BrowserReach::Kind::broken:
    return shell::windowText("linux.browser.broken", {facts.name, reach.detail});
  case app::BrowserReach::Kind::debuggingOff:
    break;
  }
  return shell::windowText("linux.browser.debuggingOff", {facts.name, std::string(facts.shortName)});
}

} // namespace

views::SystemCondition lookAtSystem(const targets::TargetContextManager& targets,
                                    platform::Accessibility& accessibility) {
  views::SystemCondition condition;
  const app::BrowserReaches reaches = app::reachOfRunning(lookPatience);
  const std::vector<targets::TargetContext>& installed = targets.installedBrowsers();
  for (const platform::BrowserFacts& facts : platform::browserTable) {
    const auto reach = reaches.find(&facts);
    const bool isInstalled = std::ranges::any_of(installed, [&](const auto& each) { return each.id == facts.id; });
    if (!isInstalled && reach == reaches.end())
      continue;
    views::BrowserCondition browser{
        .name = std::string(facts.name), .sentence = {}, .canBeStarted = false, .id = std::string(facts.id)};
    browser.sentence = reach == reaches.end() ? shell::windowText("linux.browser.notRunning", {facts.name})
                                              : conditionOf(facts, reach->second);
    browser.canBeStarted =
        isInstalled && (reach == reaches.end() || reach->second.kind == app::BrowserReach::Kind::debuggingOff);
    condition.browsers.push_back(std::move(browser));
  }
  try {
    static_cast<void>(accessibility.applications(platform::CallLimits{}.within(busPatience)));
    condition.canReadControls = true;
  } catch (const platform::DesktopFailure& failure) {
    condition.whyNot = failure.errorDescription();
  }
  return condition;
}

std::string namesOfRunningBrowsers(const targets::TargetContextManager& targets) {
  std::vector<icu::UnicodeString> names;
  for (const targets::TargetContext& browser : targets.runningBrowsers())
    names.push_back(icu::UnicodeString::fromUTF8(browser.name));
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::ListFormatter> formatter(
      icu::ListFormatter::createInstance(icu::Locale::getDefault(), status));
  icu::UnicodeString joined;
  if (U_SUCCESS(status))
    formatter->format(names.data(), static_cast<std::int32_t>(names.size()), joined, status);
  std::string text;
  joined.toUTF8String(text);
  return text;
}

std::string startBrowser(const std::string& id) {
  const platform::BrowserFacts* facts = platform::findBrowser(id);
  if (!facts)
    return {};
  try {
    app::requireDesktop(*facts);
    static_cast<void>(
        app::launchBrowser(app::launchWithOwnProfile(*facts), app::logFileOf(*facts), app::startPatience, {}));
    return {};
  } catch (const platform::Failure& failure) {
    return failure.errorDescription();
  }
}

} // namespace tabwright::desktop
