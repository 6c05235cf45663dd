#pragma once

#include "actions/ActionServices.h"
#include "engine/JavaScriptCoreSyntaxValidator.h"
#include "host/Perform.h"
#include "support/MemoryFileManager.h"
#include "support/MemoryWindowNames.h"
#include "support/ModelBrowserProbe.h"
#include "support/ModelScriptTasks.h"
#include "support/ModelWorkspace.h"
#include "support/RecordingCrashReporter.h"
#include "support/RunTask.h"
#include "targets/BrowserTargetContextsProvider.h"
#include "targets/FrontmostBrowserResolver.h"

#include <fmt/core.h>

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// Everything an action needs, with script tasks that answer instead of running, and a record of what happened in
/// order: "schedule", "count", "frontmost lookup", "run", "sleep 0.5".
class ActionBench final : platform::Clock, actions::ShutdownScheduler, actions::CallCounter, intents::ActionHost {
public:
  ActionBench() {
    tasks.onExecute = [this](const std::filesystem::path& script) { return execute(files.files.at(script)); };
  }

  std::vector<std::string> steps;
  std::vector<std::string> scripts; ///< the programs that were run, without frontmost lookups
  std::string payload = "[]";       ///< answer of the next program, JSON
  int failureNumber = -1;           ///< when not negative, the next program ends in this failure instead
  std::string frontmostID = "org.chromium.chromium";
  bool isConfirmed = false; ///< the user's answer, when an action asks
  std::function<void()> onSleep = [] {};

  MemoryFileManager files;
  ModelScriptTasks tasks;
  RecordingCrashReporter crashReporter;
  ModelBrowserProbe probe{{"chromium", "brave"}, {}};
  targets::TargetContextManager manager{probe};
  targets::BrowserTargetContextsProvider browserTargets{manager};
  targets::ApplicationTargetsProvider applicationTargets{manager};
  ModelWorkspace workspace{probe, manager};
  targets::FrontmostBrowserResolver frontmostResolver{manager};
  engine::ScriptacularServices scriptServices{.tasks = tasks,
                                              .files = files,
                                              .clock = *this,
                                              .crashReporter = crashReporter,
                                              .frontmostResolver = &frontmostResolver};
  engine::JavaScriptCoreSyntaxValidator javascriptValidator;
  MemoryWindowNames windowNames;
  actions::ActionServices services{.scripts = scriptServices,
                                   .browserTargets = browserTargets,
                                   .applicationTargets = applicationTargets,
                                   .desktop = workspace.services,
                                   .threads = std::make_shared<platform::WorkerThreads>(),
                                   .shutdown = *this,
                                   .javascriptValidator = javascriptValidator,
                                   .callCounter = this,
                                   .windowNames = &windowNames};
  host::Catalogue catalogue{services};
  intents::ActionHost& actionHost = *this;

  /// Runs an action with parameters as from a command line.
  boost::json::value perform(std::string name, host::ParameterTexts parameters) {
    return runTask(host::perform(catalogue, std::move(name), std::move(parameters), *this)).value;
  }

private:
  double secondsSinceReferenceDate() const override { return 788918400.25; }

  platform::Task<void> sleep(std::chrono::nanoseconds duration) override {
    steps.push_back(fmt::format("sleep {}", std::chrono::duration<double>(duration).count()));
    onSleep();
    co_return;
  }

  void scheduleShutdown() override { steps.emplace_back("schedule"); }
  void countCall() override { steps.emplace_back("count"); }
  platform::Task<void> requestConfirmation(intents::LocalizedText) override {
    steps.emplace_back("confirmation");
    if (!isConfirmed)
      throw intents::ConfirmationRefused();
    co_return;
  }
  void notice(const platform::Notice& notice) override { steps.push_back("notice: " + notice.sentence); }

  platform::Task<ModelScriptTasks::Result> execute(std::string text) {
    using D = platform::AppleEventDescriptor;
    const bool isLookup = text.find("frontProcess") != std::string::npos;
    steps.emplace_back(isLookup ? "frontmost lookup" : "run");
    if (isLookup)
      co_return D::list({D::boolean(true), D::string(""), D::string('"' + frontmostID + '"')});
    scripts.push_back(std::move(text));
    if (failureNumber >= 0)
      co_return D::list({D::boolean(false), D::string("1"), D::integer(failureNumber)});
    co_return D::list({D::boolean(true), D::string("1"), D::string(payload)});
  }
};

} // namespace tabwright::testsupport
