#pragma once

#include "DriverFixture.h"
#include "actions/ActionServices.h"
#include "applescript/Interpreter.h"
#include "engine/JavaScriptCoreSyntaxValidator.h"
#include "engine/Scriptacular.h"
#include "host/Perform.h"
#include "platform/linux/PosixFileManager.h"
#include "platform/linux/SystemClock.h"
#include "scripting/ScriptingDirectory.h"
#include "scripting/foundation/FoundationBridge.h"
#include "scripting/run/InterpreterScriptTasks.h"
#include "support/Environment.h"
#include "support/FailureText.h"
#include "support/MemoryWindowNames.h"
#include "support/ModelBrowserProbe.h"
#include "support/ModelDesktop.h"
#include "support/ModelWorkspace.h"
#include "support/RecordingCrashReporter.h"
#include "support/RunTask.h"
#include "support/ScratchFolder.h"
#include "targets/BrowserTargetContextsProvider.h"

#include <filesystem>
#include <string>
#include <utility>

namespace tabwright::scripting {

/// Everything between an action and the real browser, put together as the program does it. Both families' dictionaries
/// speak to the one Chromium of the test program.
class RealRoad : public DriverTest {
protected:
  static engine::TargetContext chromiumTarget() { return {"org.chromium.chromium", "Chromium"}; }

  /// The driver that answers; the one of the shared browser unless a test says otherwise.
  std::shared_ptr<BrowserDriver> answering = std::shared_ptr<BrowserDriver>(makeDriver(chromium()));

  /// Runs lines in the main handler of a family's program and yields the triple's payload in the form of `T`.
  template <class T>
  T runLines(const engine::TargetContext& target, const std::string& lines) {
    nameWindows();
    engine::Scriptacular scriptacular(services_, lines, {}, target, engine::TellSystemEvents::no);
    return testsupport::runTask(scriptacular.run<T>());
  }

  boost::json::value perform(const std::string& action, const host::ParameterTexts& parameters) {
    nameWindows();
    return testsupport::runTask(host::perform(catalogue_, action, parameters, nobody_)).value;
  }

  /// All actions, and a host without a user.
  const host::Catalogue& catalogue() {
    nameWindows();
    return catalogue_;
  }
  intents::ActionHost& nobody() { return nobody_; }
  /// The cases of the notices that actions gave so far.
  [[nodiscard]] const std::vector<std::string>& noticed() const { return nobody_.told; }

  [[nodiscard]] bool leftNoScript() const {
    const std::filesystem::path folder = scripts_ / "tabwright" / "scripts" / "Temp";
    return std::filesystem::is_directory(folder) && std::filesystem::is_empty(folder);
  }

private:
  class Nobody final : public intents::ActionHost {
    platform::Task<void> requestConfirmation(intents::LocalizedText) override {
      throw intents::ConfirmationRefused();
      co_return;
    }
    void notice(const platform::Notice& notice) override { told.push_back(notice.identity.caseName); }

  public:
    std::vector<std::string> told;
  };

  // Gives windows the titles that Safari's process gives them, which tell private ones apart.
  void nameWindows() {
    std::vector<std::string> names;
    try {
      const auto seen = answering->snapshot(limits());
      for (const WindowState& window : seen->windows)
        names.push_back(window.mode == WindowMode::incognito ? "Private" : window.title);
    } catch (const DriverFailure&) { // the run will tell
    }
    desktop_->all.clear();
    desktop_->add(1, "Safari", "com.apple.safari", names);
  }

  testsupport::ScratchFolder scripts_;
  testsupport::Environment environment_{
      {{"XDG_DATA_HOME", scripts_.path()}, {"XDG_RUNTIME_DIR", std::nullopt}}}; // which would be preferred
  std::shared_ptr<testsupport::ModelDesktop> desktop_ = std::make_shared<testsupport::ModelDesktop>();
  ScriptingDirectory directory_{
      {.makeDriver = [this](const platform::BrowserFacts&, const std::string&) { return answering; },
       .launch = {},
       .desktop = desktop_,
       .activateSelf = {}}};
  FoundationBridge bridge_;
  InterpreterScriptTasks tasks_{std::make_shared<applescript::Interpreter>(applescript::Surroundings{
      .directory = &directory_, .objectiveC = &bridge_, .sleep = {}, .now = {}, .random = {}, .log = {}})};
  platform::PosixFileManager files_;
  platform::SystemClock clock_;
  testsupport::RecordingCrashReporter crashReporter_;
  engine::ScriptacularServices services_{
      .tasks = tasks_, .files = files_, .clock = clock_, .crashReporter = crashReporter_};
  testsupport::ModelBrowserProbe probe_{{}, {}};
  testsupport::MemoryWindowNames windowNames_;
  targets::TargetContextManager targetContexts_{probe_};
  targets::BrowserTargetContextsProvider browserTargets_{targetContexts_};
  testsupport::ModelWorkspace workspace_;
  actions::NoScheduledShutdown shutdown_;
  engine::JavaScriptCoreSyntaxValidator javascriptValidator_;
  actions::ActionServices actionServices_{.scripts = services_,
                                          .browserTargets = browserTargets_,
                                          .applicationTargets = browserTargets_,
                                          .desktop = workspace_.services,
                                          .threads = std::make_shared<platform::WorkerThreads>(),
                                          .shutdown = shutdown_,
                                          .javascriptValidator = javascriptValidator_,
                                          .windowNames = &windowNames_};
  host::Catalogue catalogue_{actionServices_};
  Nobody nobody_;
};

} // namespace tabwright::scripting
