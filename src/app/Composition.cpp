#include "app/Composition.h"

#include "app/HelperFiles.h"
#include "crashreport/LoggingCrashReporter.h"
#include "platform/Logger.h"
#include "platform/linux/BrowserExecutable.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/RunningBrowsers.h"
#include "platform/linux/SystemClock.h"
#include "scripting/ScriptingDirectory.h"
#include "scripting/foundation/FoundationBridge.h"
#include "scripting/run/InterpreterScriptTasks.h"
#include "scripting/systemevents/LinuxDesktop.h"
#include "targets/BrowserTargetContextsProvider.h"
#include "targets/FrontmostBrowserResolver.h"
#include "targets/MachineProbe.h"

#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace tabwright::app {
namespace {

using platform::BrowserFacts;

/// One driver per browser, made when it is first asked for.
class Drivers {
public:
  std::shared_ptr<scripting::DevToolsDriver> driver(const BrowserFacts& facts) {
    if (facts.family != platform::BrowserFamily::chromium)
      return nullptr;
    const std::scoped_lock lock(mutex_);
    std::shared_ptr<scripting::DevToolsDriver>& driver = drivers_[facts.id];
    if (!driver && (platform::findExecutable(facts) || !platform::RunningBrowsers().find(facts).empty())) {
      const auto findRunning = [&facts] { return platform::RunningBrowsers().find(facts); };
      driver = std::make_shared<scripting::DevToolsDriver>(
          facts, scripting::DevToolsDriverParts{.helperDirectory = ensureHelperFiles(), .findRunning = findRunning});
    }
    return driver;
  }

private:
  std::mutex mutex_;
  std::map<std::string_view, std::shared_ptr<scripting::DevToolsDriver>> drivers_;
};

} // namespace

struct Composition::Parts {
  Drivers drivers;
  scripting::ScriptingDirectory directory{{
      .makeDriver = [this](const BrowserFacts& facts) { return drivers.driver(facts); },
      .launch = {},
      .desktop = std::make_shared<scripting::LinuxDesktop>(),
      .activateSelf = {},
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
  scripting::InterpreterScriptTasks tasks{interpreter};
  platform::PosixFileManager files;
  platform::SystemClock clock;
  crashreport::LoggingCrashReporter crashReporter;
  targets::MachineProbe probe;
  targets::TargetContextManager targetContexts{probe};
  targets::FrontmostBrowserResolver frontmost{targetContexts};
  targets::BrowserTargetContextsProvider browserTargets{targetContexts};
  engine::ScriptacularServices scripts{
      .tasks = tasks, .files = files, .clock = clock, .crashReporter = crashReporter, .frontmostResolver = &frontmost};
  actions::NoScheduledShutdown shutdown;
  actions::ActionServices services{.scripts = scripts, .browserTargets = browserTargets, .shutdown = shutdown};
  host::Catalogue catalogue{services};
};

Composition::Composition() : parts_(std::make_unique<Parts>()) {}
Composition::~Composition() = default;

const host::Catalogue& Composition::catalogue() const {
  return parts_->catalogue;
}
applescript::Interpreter& Composition::interpreter() {
  return *parts_->interpreter;
}

std::shared_ptr<scripting::DevToolsDriver> Composition::driver(const BrowserFacts& facts) {
  return parts_->drivers.driver(facts);
}

} // namespace tabwright::app
