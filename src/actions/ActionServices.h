#pragma once

#include "actions/ShutdownScheduler.h"
#include "actions/WindowNames.h"
#include "automation/DesktopServices.h"
#include "engine/JavascriptSyntaxValidator.h"
#include "engine/ScriptacularServices.h"
#include "intents/OptionsProvider.h"
#include "platform/WorkerThreads.h"

#include <memory>

namespace tabwright::actions {

/// Keeps the number of action runs.
class CallCounter {
public:
  virtual ~CallCounter() = default;

  /// Adds 1 to `actionsCallCount`. Several runs may call it at once. Must not throw.
  virtual void countCall() = 0;
};

/// All that actions need of the world. The program makes one; it and all that it names outlive every action.
struct ActionServices {
  /// For programs, and for the clock.
  const engine::ScriptacularServices& scripts;
  const intents::OptionsProvider& browserTargets;     ///< choices and default of `targetContext` …
  const intents::OptionsProvider& applicationTargets; ///< … and of that of actions on whichever application
  /// For menus, keys and starting applications.
  const automation::DesktopServices& desktop;
  std::shared_ptr<platform::WorkerThreads> threads; ///< for what blocks
  /// Told of each run that counts.
  ShutdownScheduler& shutdown;
  /// Checks code of users' before it runs.
  engine::JavascriptSyntaxValidator& javascriptValidator;
  CallCounter* callCounter = nullptr; ///< null: runs are not counted
  WindowNames* windowNames = nullptr; ///< null: windows of Safari keep the titles that it gives them
};

} // namespace tabwright::actions
