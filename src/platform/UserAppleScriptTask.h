#pragma once

#include "platform/AppleEvent.h"
#include "platform/Failure.h"
#include "platform/FileManager.h"
#include "platform/Task.h"

#include <memory>
#include <optional>
#include <vector>

namespace tabwright::platform {

/// One script file, ready to be run by an Apple event.
///
///     const auto task = tasks.initWithURL(*script);
///     const auto result = co_await task->executeWithAppleEvent(std::move(event));
///     const auto beside = task->notices();
class UserAppleScriptTask {
public:
  virtual ~UserAppleScriptTask() = default;

  /// Runs the script's handler that the event names (keyword 'snam', parameters in the list of keyword '----') and
  /// yields its result, or nothing when the handler returned nothing.
  ///
  /// Throws a `Failure` whose description is AppleScript's own ("execution error: SENTENCE (NUMBER)") when the script
  /// doesn't compile or ends in an error. Its cause has the line of the script's text, where that is known. Cancelling
  /// the awaiting coroutine stops the script and ends in error -128. The script has ended when this returns or throws;
  /// no thread of it is left.
  virtual Task<std::optional<AppleEventDescriptor>> executeWithAppleEvent(AppleEvent event) = 0;

  /// Notices of the applications that the script spoke to, beside their answers, after the run.
  [[nodiscard]] virtual std::vector<Notice> notices() const { return {}; }
};

/// Makes script tasks. Safe to call from several threads.
class UserAppleScriptTasks {
public:
  virtual ~UserAppleScriptTasks() = default;

  /// The text runs as it was written, not as it lies under the file's name by then. The file need not outlive the call.
  /// Throws a `Failure` when it can't be read.
  virtual std::unique_ptr<UserAppleScriptTask> initWithURL(const WrittenFile& script) = 0;
};

} // namespace tabwright::platform
