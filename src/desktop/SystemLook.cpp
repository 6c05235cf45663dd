#include "desktop/SystemLook.h"

#include "app/BrowserLauncher.h"
#include "app/BrowserReach.h"
#include "connect/ConnectRecord.h"
#include "connect/ConnectionState.h"
#include "connect/HelperInstallation.h"
#include "connect/HelperParts.h"
#include "connect/UserDataDirectory.h"
#include "platform/DesktopFault.h"
#include "shell/WindowText.h"
#include "targets/SupportedBrowsers.h"

#include <unicode/listformatter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <memory>
#include <vector>

namespace tabwright::desktop {
namespace {

constexpr std::chrono::milliseconds lookPatience{800};
constexpr std::chrono::seconds busPatience{2};

using shell::windowText;
using views::Mending;

/// One line for each helper that is reached: the profile, scripts in pages, private windows.
std::vector<std::string> detailsOf(const connect::ConnectionState& state) {
  std::vector<std::string> details;
  for (const connect::ProfileState& profile : state.profiles) {
    if (!profile.helper)
      continue;
    const std::string scripts =
        windowText(profile.helper->mayRunScripts ? "linux.scripts.allowed" : "linux.scripts.forbidden");
    const std::string windows =
        windowText(profile.helper->seesPrivateWindows ? "linux.private.seen" : "linux.private.unseen");
    details.push_back(profile.profile.name.empty()
                          ? windowText("linux.browser.aProfile", {scripts, windows})
                          : windowText("linux.browser.profile", {profile.profile.name, scripts, windows}));
  }
  return details;
}

/// True when a switch of a helper is off that the user may want on.
bool lacksSwitch(const connect::ProfileState& profile) {
  return profile.helper && !(profile.helper->mayRunScripts && profile.helper->seesPrivateWindows);
}

Mending mendingOf(const connect::ConnectionState& state, bool hasPort) {
  if (std::ranges::any_of(state.profiles, lacksSwitch))
    return Mending::openSwitches;
  const bool isOutOfReach = !hasPort && !state.isConnected();
  const bool canTakeHelper =
      state.directory.sandbox == connect::Sandbox::none &&
      (state.files == connect::HelperFiles::absent || state.files == connect::HelperFiles::other);
  return isOutOfReach && canTakeHelper ? Mending::install : Mending::none;
}

/// Those of a browser that run now.
std::vector<connect::ConnectionState> runningConnections(const platform::BrowserFacts& facts,
                                                         const connect::HelperParts& parts) {
  std::vector<connect::ConnectionState> states = connect::lookAtConnections(
      connect::findUserDataDirectories(&facts, connect::UserDataPlaces::ofThisProcess()), parts, {});
  std::erase_if(states, [](const connect::ConnectionState& state) { return !state.browser; });
  return states;
}

connect::HelperParts helperParts() {
  // The parts lie beside the full program, as this one does.
  return connect::findHelperParts(std::filesystem::read_symlink("/proc/self/exe"));
}

void addConnections(views::BrowserCondition& browser, const platform::BrowserFacts& facts) {
  try {
    for (const connect::ConnectionState& state : runningConnections(facts, helperParts())) {
      std::ranges::move(detailsOf(state), std::back_inserter(browser.details));
      const bool hasPort = app::portReachOf(*state.browser, lookPatience).kind == app::BrowserReach::Kind::drivable;
      if (hasPort)
        browser.details.push_back(windowText("linux.browser.byPort"));
      if (browser.mending == Mending::none)
        browser.mending = mendingOf(state, hasPort);
    }
  } catch (const platform::Failure& failure) {
    browser.details.push_back(failure.errorDescription());
  }
}

std::string startBrowser(const platform::BrowserFacts& facts) {
  app::requireDesktop(facts);
  static_cast<void>(
      app::launchBrowser(app::launchWithOwnProfile(facts), app::logFileOf(facts), app::startPatience, {}));
  return {};
}

std::string installHelper(const platform::BrowserFacts& facts) {
  const connect::HelperParts parts = helperParts();
  connect::ConnectRecord record(connect::ConnectRecord::usualFile());
  for (const connect::ConnectionState& state : runningConnections(facts, parts))
    connect::installHelper(state.directory, parts, record);
  return windowText("linux.browser.restart", {facts.name});
}

std::string openSwitches(const platform::BrowserFacts& facts) {
  const connect::HelperParts parts = helperParts();
  for (const connect::ConnectionState& state : runningConnections(facts, parts)) {
    const auto profile = std::ranges::find_if(state.profiles, lacksSwitch);
    if (profile != state.profiles.end() && connect::openPage(state, *profile, parts.settingsPage(), {}))
      return windowText("linux.browser.opened", {facts.name});
  }
  return windowText("linux.browser.notOpened", {facts.name});
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
    views::BrowserCondition browser{.name = std::string(facts.name),
                                    .sentence = {},
                                    .details = {},
                                    .mending = Mending::none,
                                    .id = std::string(facts.id)};
    if (reach == reaches.end()) {
      browser.sentence = windowText("linux.browser.notRunning", {facts.name});
      browser.mending = isInstalled ? Mending::start : Mending::none;
    } else {
      browser.sentence = app::sentenceOf(facts, reach->second, platform::StringCatalogue::shared());
      addConnections(browser, facts);
    }
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

std::string mend(const std::string& id, views::Mending mending) {
  const platform::BrowserFacts* facts = platform::findBrowser(id);
  if (!facts)
    return {};
  try {
    switch (mending) {
    case Mending::none:
      return {};
    case Mending::start:
      return startBrowser(*facts);
    case Mending::install:
      return installHelper(*facts);
    case Mending::openSwitches:
      return openSwitches(*facts);
    }
    return {};
  } catch (const platform::Failure& failure) {
    return failure.errorDescription();
  }
}

} // namespace tabwright::desktop
