#pragma once

#include "applescript/Interpreter.h"
#include "platform/UserAppleScriptTask.h"
#include "platform/WorkerThreads.h"

#include <memory>

namespace tabwright::scripting {

/// Script tasks that run in this project's own interpreter, each script on a thread of its own while it runs.
///
///     InterpreterScriptTasks tasks(std::make_shared<applescript::Interpreter>(surroundings));
///     auto task = tasks.initWithURL(*file);
///     auto result = co_await task->executeWithAppleEvent(event);       // resumes on the coroutine's own executor
///
/// The file is read by `initWithURL`, and compiled on the script's thread. A run ends in the script's error, as it is:
/// a ScriptError. A result without a form in Apple events (a record, an object of an application, `missing value`)
/// comes as its source form.
class InterpreterScriptTasks final : public platform::UserAppleScriptTasks {
public:
  /// One interpreter serves all tasks, on several threads at once. `threads` may be shared with others.
  explicit InterpreterScriptTasks(
      std::shared_ptr<applescript::Interpreter> interpreter,
      std::shared_ptr<platform::WorkerThreads> threads = std::make_shared<platform::WorkerThreads>());

  /// Reads the text and compiles nothing yet: errors of syntax are the run's.
  std::unique_ptr<platform::UserAppleScriptTask> initWithURL(const platform::WrittenFile& script) override;

private:
  std::shared_ptr<applescript::Interpreter> interpreter_;
  std::shared_ptr<platform::WorkerThreads> threads_;
};

} // namespace tabwright::scripting
