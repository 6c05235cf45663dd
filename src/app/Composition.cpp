// The program's parts are members of one struct, in the order in which they are made, each given references to those
// that it needs; in reverse order they go. Nothing outside is touched here: what costs time connects by itself when it
// is first asked something. A cycle is broken by a reference to a part that is made later and not used before, or by a
// function.
#include "app/Composition.h"

#include "ConnectedHelper.h"
#include "app/AutomationElements.h"
#include "app/BrowserLauncher.h"
#include "app/HelperFiles.h"
#include "connect/BrowserProfiles.h"
#include "crashreport/LoggingCrashReporter.h"
#include "engine/JavaScriptCoreSyntaxValidator.h"
#include "platform/AsciiCase.h"
#include "platform/Logger.h"
#include "platform/Mutex.h"
#include "platform/linux/AtspiAccessibility.h"
#include "platform/linux/GnomeAppearance.h"
#include "platform/linux/InstalledBrowsers.h"
#include "platform/linux/LinuxUserDefaults.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/RunningBrowsers.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/X11Keyboard.h"
#include "platform/linux/X11Pointer.h"
#include "platform/linux/X11WindowSystem.h"
#include "platform/linux/XdgApplications.h"
#include "scripting/ScriptingDirectory.h"
#include "scripting/driver/PageKeyboard.h"
#include "scripting/foundation/FoundationBridge.h"
#include "scripting/run/InterpreterScriptTasks.h"
#include "scripting/systemevents/LinuxDesktop.h"
#include "scripting/systemevents/RecentBrowsers.h"
#include "shell/DefaultsKeys.h"
#include "targets/BrowserTargetContextsProvider.h"
#include "targets/FrontmostBrowserResolver.h"
#include "targets/MachineProbe.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::app {
namespace {

using platform::BrowserFacts;

/// True when the browser is installed, or runs from somewhere else.
bool isHere(const BrowserFacts& facts) {
  const auto installed = platform::findInstalledBrowsers(platform::InstallationPlaces::ofThisProcess());
  return std::ranges::find(installed, &facts) != installed.end() || !platform::RunningBrowsers().find(facts).empty();
}

std::vector<targets::RunningApplication> runningApplications(scripting::Desktop& desktop) {
  std::vector<targets::RunningApplication> applications;
  for (const scripting::DesktopProcess& process : desktop.processes())
    applications.push_back(applicationOf(process));
  return applications;
}

/// True when the profile is called so: by the name that its user gave it, or by its folder; for the browser as a whole,
/// when that folder is the user data directory.
bool isProfile(const platform::RunningBrowser& browser, const std::string& mark, const std::string& name) {
  const std::filesystem::path& userData = browser.profileDirectory;
  if (mark.empty())
    return platform::equalIgnoringCase(userData.filename().string(), name);
  const std::string helper(connectedhelper::identity);
  const std::string folder = connect::findProfileOfHelper(userData, helper, mark);
  const std::vector<connect::BrowserProfile> profiles = connect::readProfiles(userData, helper);
  return std::ranges::any_of(profiles, [&](const connect::BrowserProfile& each) {
    const bool isCalledSo =
        platform::equalIgnoringCase(each.name, name) || platform::equalIgnoringCase(each.directory, name);
    return each.directory == folder && isCalledSo;
  });
}

/// One driver per browser and profile, made when it is first asked for.
class Drivers {
public:
  explicit Drivers(std::shared_ptr<scripting::Desktop> desktop) : recentBrowsers_(std::move(desktop)) {}

  /// The driver of one profile, or of whichever the user is in.
  std::shared_ptr<scripting::ChromiumDriver> driver(const BrowserFacts& facts, const std::string& profile = {}) {
    if (facts.family != platform::BrowserFamily::chromium)
      return nullptr;
    const platform::MutexLock lock(mutex_);
    // One that isn't there is looked for again at each call: a browser may be installed or started at any time. The
    // lock is held for the search, so that two callers never get two drivers.
    std::shared_ptr<scripting::ChromiumDriver>& driver = drivers_[{facts.id, profile}];
    if (!driver && isHere(facts)) {
      const auto findRunning = [browsers = recentBrowsers_, &facts] { return browsers.find(facts); };
      driver = std::make_shared<scripting::ChromiumDriver>(
          facts, scripting::ChromiumDriverParts{.helperDirectory = ensureHelperFiles(),
                                                .findRunning = findRunning,
                                                .profile = profile,
                                                .isProfile = isProfile});
    }
    return driver;
  }

private:
  const scripting::RecentBrowsers recentBrowsers_;
  platform::Mutex mutex_;
  std::map<std::pair<std::string_view, std::string>, std::shared_ptr<scripting::ChromiumDriver>>
      drivers_ GUARDED_BY(mutex_);
};

/// Browsers show their controls because they are told to over the protocol.
class DriverControls final : public automation::BrowserControls {
public:
  explicit DriverControls(Drivers& drivers) : drivers_(drivers) {}

  void show(const targets::RunningApplication& browser, const platform::CallLimits& limits) override {
    const BrowserFacts* facts = platform::findBrowser(browser.bundleIdentifier);
    if (const auto driver = facts ? drivers_.driver(*facts) : nullptr)
      driver->perform(scripting::ShowControls{}, limits);
  }

private:
  Drivers& drivers_;
};

/// Starts a browser that a script activates and that doesn't run: it becomes one that the script's next words reach.
void launchForScript(const BrowserFacts& facts) {
  requireDesktop(facts);
  static_cast<void>(launchBrowser(launchWithOwnProfile(facts), logFileOf(facts), startPatience, {}));
}

/// The settings of a process that runs one command, which no other part of it uses. Such a process has no launch of
/// its own to record: its first action is the first launch, where no host was before it.
class OwnSettings final : public actions::CallCounter {
public:
  explicit OwnSettings(const platform::Clock& clock) : clock_(clock) {}

  void countCall() override {
    manager.recordFirstLaunch(clock_);
    manager.countCall();
  }

private:
  const platform::Clock& clock_;
  platform::LinuxUserDefaults defaults_;
  shell::DefaultsKeys keys_{defaults_};

public:
  shell::UserDefaultsManager manager{defaults_, keys_};
};

} // namespace

/// All parts. None is copied or moved once made: they know one another by address.
struct Composition::Parts {
  // A process that stays gives its own, and no others are made beside them.
  explicit Parts(const Lifecycle* given) : lifecycle(given ? *given : ownLifecycle()) {}

  Lifecycle ownLifecycle() {
    ownSettings.emplace(clock);
    return {ownSettings->manager, noShutdown, logReporter};
  }

  std::optional<scripting::PageKeyboard::FrontBrowser> frontBrowser() {
    const std::optional<scripting::DesktopProcess> front = desktop->frontmost();
    const BrowserFacts* facts = front ? platform::findBrowser(front->bundleIdentifier) : nullptr;
    // Keys for another application, or a browser that can't be driven, go to the display.
    auto driver = facts ? drivers.driver(*facts) : nullptr;
    if (!driver)
      return std::nullopt;
    return scripting::PageKeyboard::FrontBrowser{std::move(driver), !front->isHeadless};
  }

  platform::SystemClock clock;
  std::optional<OwnSettings> ownSettings;
  actions::NoScheduledShutdown noShutdown;
  crashreport::LoggingCrashReporter logReporter;
  const Lifecycle lifecycle;
  // Each connects when it is first asked something.
  platform::X11WindowSystem windows;
  platform::X11Keyboard displayKeyboard;
  scripting::PageKeyboard keyboard{displayKeyboard, [this] { return frontBrowser(); }};
  platform::X11Pointer pointer;
  platform::GnomeAppearance appearance;
  platform::AtspiAccessibility accessibility;
  platform::XdgApplications installed;
  // Only keeps the reference: the services are made below, and need the desktop that needs this.
  AutomationElements elements{desktopServices};
  std::shared_ptr<scripting::Desktop> desktop =
      std::make_shared<scripting::LinuxDesktop>(scripting::LinuxDesktop::Seams{.windows = windows,
                                                                               .keyboard = keyboard,
                                                                               .pointer = pointer,
                                                                               .appearance = appearance,
                                                                               .installed = installed,
                                                                               .elements = elements});
  Drivers drivers{desktop};
  scripting::ScriptingDirectory directory{{
      .makeDriver = [this](const BrowserFacts& facts,
                           const std::string& profile) { return drivers.driver(facts, profile); },
      .launch = launchForScript,
      .desktop = desktop,
      .activateSelf = lifecycle.activateSelf,
  }};
  scripting::FoundationBridge bridge;
  platform::Logger scriptLog{"Script"};
  std::shared_ptr<applescript::Interpreter> interpreter =
      std::make_shared<applescript::Interpreter>(applescript::Surroundings{
          .directory = &directory,
          .objectiveC = &bridge,
          .sleep = {},
          .now = {},
          .random = {},
          .log = [this](std::string_view text) { scriptLog.info("{}", text); },
      });
  std::shared_ptr<platform::WorkerThreads> threads = std::make_shared<platform::WorkerThreads>();
  scripting::InterpreterScriptTasks tasks{interpreter, threads};
  platform::PosixFileManager files;
  targets::MachineProbe probe{[desktop = desktop] { return runningApplications(*desktop); }};
  targets::TargetContextManager targetContexts{probe};
  targets::FrontmostBrowserResolver frontmost{targetContexts};
  targets::BrowserTargetContextsProvider browserTargets{targetContexts};
  targets::ApplicationTargetsProvider applicationTargets{targetContexts};
  DriverControls browserControls{drivers};
  automation::DesktopServices desktopServices{accessibility, windows,        keyboard,       installed,
                                              clock,         targetContexts, browserControls};
  engine::ScriptacularServices scripts{.tasks = tasks,
                                       .files = files,
                                       .clock = clock,
                                       .crashReporter = lifecycle.crashReporter,
                                       .frontmostResolver = &frontmost,
                                       .browserVersions = &lifecycle.settings};
  engine::JavaScriptCoreSyntaxValidator javascriptValidator;
  actions::ActionServices services{.scripts = scripts,
                                   .browserTargets = browserTargets,
                                   .applicationTargets = applicationTargets,
                                   .desktop = desktopServices,
                                   .threads = threads,
                                   .shutdown = lifecycle.shutdown,
                                   .javascriptValidator = javascriptValidator,
                                   .callCounter = ownSettings ? static_cast<actions::CallCounter*>(&*ownSettings)
                                                              : &lifecycle.settings,
                                   .windowNames = &lifecycle.settings};
  host::Catalogue catalogue{services};
  targets::SupportedBrowsersProvider supportedBrowsers;
  // Nothing is run by these, so nothing is counted and no quit is put off.
  actions::ActionServices referenceServices{.scripts = scripts,
                                            .browserTargets = supportedBrowsers,
                                            .applicationTargets = supportedBrowsers,
                                            .desktop = desktopServices,
                                            .threads = threads,
                                            .shutdown = noShutdown,
                                            .javascriptValidator = javascriptValidator};
};

Composition::Composition() : parts_(std::make_unique<Parts>(nullptr)) {}
Composition::Composition(const Lifecycle& lifecycle) : parts_(std::make_unique<Parts>(&lifecycle)) {}
Composition::~Composition() = default;

const host::Catalogue& Composition::catalogue() const {
  return parts_->catalogue;
}

host::Catalogue Composition::referenceCatalogue() const {
  return host::Catalogue(parts_->referenceServices);
}

applescript::Interpreter& Composition::interpreter() {
  return *parts_->interpreter;
}

shell::BrowserPermissions Composition::browserPermissions() const {
  return shell::BrowserPermissions(
      {.settings = parts_->lifecycle.settings, .targets = parts_->targetContexts, .scripts = parts_->scripts});
}

const targets::TargetContextManager& Composition::targets() const {
  return parts_->targetContexts;
}

platform::Accessibility& Composition::accessibility() {
  return parts_->accessibility;
}

std::shared_ptr<scripting::ChromiumDriver> Composition::driver(const BrowserFacts& facts) {
  return parts_->drivers.driver(facts);
}

} // namespace tabwright::app
