// A task keeps the text that was written, not the file. A run is one job on a worker thread: it compiles, calls the
// handler and turns the result into a descriptor. The line of an error is worked out here, where its place and the text
// are known together.
#include "scripting/run/InterpreterScriptTasks.h"

#include "applescript/values/Errors.h"
#include "platform/OnThread.h"
#include "scripting/run/DescriptorConversion.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tabwright::scripting {

using applescript::Value;
namespace errors = applescript::errors;
using platform::AppleEvent;
using platform::AppleEventDescriptor;
using Result = std::optional<AppleEventDescriptor>;

namespace {

constexpr auto handlerNameKeyword = platform::fourCharCode("snam");
constexpr auto argumentsKeyword = platform::fourCharCode("----");

/// Puts the line of the source into the error's cause.
void place(applescript::ScriptError& error, std::string_view source) {
  if (!error.range())
    return;
  platform::Notice cause = platform::asCause(error);
  // Lines count from 1; an error stands on the line that its range begins on.
  cause.line = 1 + std::ranges::count(source.substr(0, error.range()->offset), '\n');
  error.setCause(std::move(cause));
}

Result runScript(applescript::Interpreter& interpreter, const std::string& source, const AppleEvent& event,
                 std::stop_token stop, std::shared_ptr<platform::Notices> notices) {
  // A run that was cancelled while it waited for a thread doesn't begin.
  if (stop.stop_requested())
    throw errors::userCancelled();
  std::vector<Value> arguments;
  if (const auto list = event.parameters.find(argumentsKeyword); list != event.parameters.end()) {
    for (std::size_t index = 1; index <= list->second.numberOfItems(); ++index)
      arguments.push_back(valueOf(*list->second.descriptorAtIndex(index)));
  }
  const auto name = event.parameters.find(handlerNameKeyword);
  const auto handler = name != event.parameters.end() ? name->second.stringValue() : std::nullopt;
  try {
    const auto script = interpreter.compile(source);
    const Value result =
        handler ? interpreter.call(*script, *handler, std::move(arguments), std::move(stop), std::move(notices))
                : interpreter.run(*script, std::move(arguments), std::move(stop), std::move(notices));
    // A handler without a result isn't one whose result is `missing value`.
    return result.isNothing() ? Result() : Result(descriptorOf(result));
  } catch (applescript::ScriptError& error) {
    place(error, source);
    throw;
  }
}

class InterpreterScriptTask final : public platform::UserAppleScriptTask {
public:
  InterpreterScriptTask(std::string source, std::shared_ptr<applescript::Interpreter> interpreter,
                        std::shared_ptr<platform::WorkerThreads> threads)
      : source_(std::make_shared<const std::string>(std::move(source))), interpreter_(std::move(interpreter)),
        threads_(std::move(threads)) {}

  platform::Task<Result> executeWithAppleEvent(AppleEvent event) override {
    // Copies: the run may outlast this object.
    return platform::onThread<Result>(threads_, [source = source_, interpreter = interpreter_, notices = notices_,
                                                 event = std::move(event)](std::stop_token stop) {
      return runScript(*interpreter, *source, event, std::move(stop), notices);
    });
  }

  [[nodiscard]] std::vector<platform::Notice> notices() const override { return notices_->all(); }

private:
  std::shared_ptr<const std::string> source_;
  std::shared_ptr<applescript::Interpreter> interpreter_;
  std::shared_ptr<platform::WorkerThreads> threads_;
  std::shared_ptr<platform::Notices> notices_ = std::make_shared<platform::Notices>();
};

} // namespace

InterpreterScriptTasks::InterpreterScriptTasks(std::shared_ptr<applescript::Interpreter> interpreter,
                                               std::shared_ptr<platform::WorkerThreads> threads)
    : interpreter_(std::move(interpreter)), threads_(std::move(threads)) {}

std::unique_ptr<platform::UserAppleScriptTask>
InterpreterScriptTasks::initWithURL(const platform::WrittenFile& script) {
  return std::make_unique<InterpreterScriptTask>(script.content(), interpreter_, threads_);
}

} // namespace tabwright::scripting
