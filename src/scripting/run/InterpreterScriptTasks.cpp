// A run is one Asio operation: its initiation hands the script to a thread, and the thread posts the completion to the
// executor of the awaiting coroutine. A cancellation only requests the stop; the operation completes when the script
// has ended.
#include "scripting/run/InterpreterScriptTasks.h"

#include "applescript/values/Errors.h"
#include "scripting/run/DescriptorConversion.h"

#include <boost/asio/associated_cancellation_slot.hpp>
#include <boost/asio/associated_executor.hpp>
#include <boost/asio/async_result.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <algorithm>
#include <exception>
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
  cause.line = 1 + std::ranges::count(source.substr(0, error.range()->offset), '\n');
  error.setCause(std::move(cause));
}

Result runScript(applescript::Interpreter& interpreter, const std::string& source, const AppleEvent& event,
                 std::stop_token stop, std::shared_ptr<platform::Notices> notices) {
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
    return result.isNothing() ? Result() : Result(descriptorOf(result));
  } catch (applescript::ScriptError& error) {
    place(error, source);
    throw;
  }
}

class InterpreterScriptTask final : public platform::UserAppleScriptTask {
public:
  InterpreterScriptTask(std::string source, std::shared_ptr<applescript::Interpreter> interpreter,
                        std::shared_ptr<ScriptThreads> threads)
      : source_(std::make_shared<const std::string>(std::move(source))), interpreter_(std::move(interpreter)),
        threads_(std::move(threads)) {}

  platform::Task<Result> executeWithAppleEvent(AppleEvent event) override {
    // Copies: the run may outlast this object.
    auto begin = [source = source_, interpreter = interpreter_, threads = threads_, notices = notices_,
                  event = std::move(event)](auto handler) mutable {
      using Handler = decltype(handler);
      const auto executor = boost::asio::get_associated_executor(handler);
      auto slot = boost::asio::get_associated_cancellation_slot(handler);
      auto completion = std::make_shared<Handler>(std::move(handler));
      auto complete = [completion, slot, guard = boost::asio::make_work_guard(executor)](
                          const std::exception_ptr& failure, Result result) mutable {
        boost::asio::post(guard.get_executor(),
                          [completion = std::move(completion), slot, failure, result = std::move(result)]() mutable {
                            slot.clear();
                            std::move (*completion)(failure, std::move(result));
                          });
        guard.reset();
      };
      const auto job = threads->prepare(
          [source, interpreter, notices, event = std::move(event), complete](std::stop_token stop) mutable {
            std::exception_ptr failure;
            Result result;
            try {
              result = runScript(*interpreter, *source, event, std::move(stop), std::move(notices));
            } catch (...) {
              failure = std::current_exception();
            }
            complete(failure, std::move(result));
          });
      if (slot.is_connected()) {
        // Weak: the slot lives in the coroutine that the job's completion keeps.
        slot.assign([threads = std::weak_ptr(threads), job = std::weak_ptr(job)](boost::asio::cancellation_type) {
          const auto owner = threads.lock();
          const auto running = job.lock();
          if (owner && running)
            owner->cancel(running);
        });
      }
      try {
        threads->start(job);
      } catch (...) {
        complete(std::current_exception(), {});
      }
    };
    co_return co_await boost::asio::async_initiate<const boost::asio::use_awaitable_t<>&,
                                                   void(std::exception_ptr, Result)>(std::move(begin),
                                                                                     boost::asio::use_awaitable);
  }

  [[nodiscard]] std::vector<platform::Notice> notices() const override { return notices_->all(); }

private:
  std::shared_ptr<const std::string> source_;
  std::shared_ptr<applescript::Interpreter> interpreter_;
  std::shared_ptr<ScriptThreads> threads_;
  std::shared_ptr<platform::Notices> notices_ = std::make_shared<platform::Notices>();
};

} // namespace

InterpreterScriptTasks::InterpreterScriptTasks(std::shared_ptr<applescript::Interpreter> interpreter,
                                               std::size_t mostThreads)
    : interpreter_(std::move(interpreter)), threads_(std::make_shared<ScriptThreads>(mostThreads)) {}

std::unique_ptr<platform::UserAppleScriptTask>
InterpreterScriptTasks::initWithURL(const platform::WrittenFile& script) {
  return std::make_unique<InterpreterScriptTask>(script.content(), interpreter_, threads_);
}

} // namespace tabwright::scripting
