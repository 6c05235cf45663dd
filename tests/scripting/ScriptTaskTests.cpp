#include "platform/Mutex.h"
#include "scripting/ScriptingDirectory.h"
#include "scripting/run/DescriptorConversion.h"
#include "scripting/run/InterpreterScriptTasks.h"
#include "support/FailureText.h"
#include "support/MemoryFileManager.h"
#include "support/ModelDesktop.h"
#include "support/RunTask.h"

#include <boost/asio/bind_cancellation_slot.hpp>
#include <boost/asio/cancellation_signal.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <thread>

namespace {

using namespace tabwright;
using platform::AppleEvent;
using platform::AppleEventDescriptor;
using platform::fourCharCode;
using testing::HasSubstr;
using Result = std::optional<AppleEventDescriptor>;

AppleEvent callOf(const std::string& handler, std::vector<std::string> arguments = {}) {
  AppleEvent event;
  event.parameters[fourCharCode("snam")] = AppleEventDescriptor::string(handler);
  AppleEventDescriptor list = AppleEventDescriptor::list();
  for (std::string& argument : arguments)
    list.append(AppleEventDescriptor::string(std::move(argument)));
  event.parameters[fourCharCode("----")] = list;
  return event;
}

/// Scripts whose `delay` waits until it is stopped, so that a test knows where they are.
class ScriptTasks : public testing::Test {
protected:
  ScriptTasks() {
    scripting::ScriptingServices services;
    services.desktop = std::make_shared<testsupport::ModelDesktop>();
    directory = std::make_unique<scripting::ScriptingDirectory>(std::move(services));
    applescript::Surroundings surroundings;
    surroundings.directory = directory.get();
    surroundings.sleep = [this](std::chrono::nanoseconds, std::stop_token stop) {
      platform::MutexLock lock(mutex);
      ++sleeping;
      changed.notify_all();
      std::condition_variable_any wake;
      wake.wait(lock, stop, [] { return false; });
      --sleeping;
    };
    interpreter = std::make_shared<applescript::Interpreter>(surroundings);
  }

  std::unique_ptr<platform::UserAppleScriptTask> task(scripting::InterpreterScriptTasks& tasks,
                                                      const std::string& source) {
    return tasks.initWithURL(
        *files.writeNewFileAtomically(files.scriptsFolder / std::to_string(files.written.size()), source));
  }

  static std::string failureOf(platform::UserAppleScriptTask& task, AppleEvent event) {
    return testsupport::failureText([&] { return testsupport::runTask(task.executeWithAppleEvent(std::move(event))); });
  }

  int sleepers() {
    const platform::MutexLock lock(mutex);
    return sleeping;
  }

  void awaitSleepers(int count) {
    platform::MutexLock lock(mutex);
    changed.wait(lock, [&]() REQUIRES(mutex) { return sleeping == count; });
  }

  testsupport::MemoryFileManager files;
  platform::Mutex mutex;
  std::condition_variable_any changed;
  int sleeping GUARDED_BY(mutex) = 0;
  std::unique_ptr<scripting::ScriptingDirectory> directory;
  std::shared_ptr<applescript::Interpreter> interpreter;
};

TEST_F(ScriptTasks, CallsTheHandlerThatTheEventNames) {
  scripting::InterpreterScriptTasks tasks(interpreter);
  const auto join = task(tasks, "on join(a, b)\nreturn {true, a & b, 3, 0.5, missing value, {x:1}}\nend join");
  const Result result = testsupport::runTask(join->executeWithAppleEvent(callOf("join", {"x", "“y”"})));
  ASSERT_TRUE(result);
  ASSERT_EQ(result->numberOfItems(), 6U);
  EXPECT_TRUE(result->descriptorAtIndex(1)->booleanValue());
  EXPECT_EQ(result->descriptorAtIndex(2)->stringValue(), "x“y”");
  EXPECT_EQ(result->descriptorAtIndex(3)->int32Value(), 3);
  EXPECT_EQ(result->descriptorAtIndex(4)->doubleValue(), 0.5);
  EXPECT_EQ(result->descriptorAtIndex(5)->description(), "missing value");
  EXPECT_EQ(result->descriptorAtIndex(6)->description(), "{x:1}");

  const auto silent = task(tasks, "on silent()\nreturn\nend silent");
  EXPECT_FALSE(testsupport::runTask(silent->executeWithAppleEvent(callOf("silent"))));
}

TEST_F(ScriptTasks, FailsInTheWordsOfTheLanguage) {
  scripting::InterpreterScriptTasks tasks(interpreter);
  EXPECT_THAT(failureOf(*task(tasks, "on f()\nreturn (\nend f"), callOf("f")), testing::StartsWith("syntax error: "));
  EXPECT_EQ(failureOf(*task(tasks, "on f()\nerror \"no\" number 5\nend f"), callOf("f")), "execution error: no (5)");
  EXPECT_THAT(failureOf(*task(tasks, "on f()\nend f"), callOf("g")), HasSubstr("(-1708)"));
}

TEST_F(ScriptTasks, StopARunningScriptWhenItsCoroutineIsCancelled) {
  scripting::InterpreterScriptTasks tasks(interpreter);
  const auto endless = task(tasks, "on f()\nrepeat\ndelay 1000\nend repeat\nend f");
  boost::asio::io_context context;
  boost::asio::cancellation_signal signal;
  std::string failure;
  int completions = 0;
  boost::asio::co_spawn(context, endless->executeWithAppleEvent(callOf("f")),
                        boost::asio::bind_cancellation_slot(signal.slot(), [&](std::exception_ptr thrown, Result) {
                          ++completions;
                          try {
                            std::rethrow_exception(thrown);
                          } catch (const platform::Failure& error) {
                            failure = error.errorDescription();
                          }
                        }));
  context.run_one();
  awaitSleepers(1);
  signal.emit(boost::asio::cancellation_type::terminal);
  context.run();
  EXPECT_THAT(failure, HasSubstr("(-128)"));
  EXPECT_EQ(completions, 1);
  EXPECT_EQ(sleepers(), 0);
}

TEST_F(ScriptTasks, RunBesideManyThatWait) {
  scripting::InterpreterScriptTasks tasks(interpreter);
  const auto waiting = task(tasks, "on f()\ndelay 1000\nend f");
  boost::asio::io_context context;
  std::vector<boost::asio::cancellation_signal> signals(40);
  for (auto& signal : signals)
    boost::asio::co_spawn(context, waiting->executeWithAppleEvent(callOf("f")),
                          boost::asio::bind_cancellation_slot(signal.slot(), [](std::exception_ptr, Result) {}));
  context.poll();
  awaitSleepers(40);
  const auto quick = task(tasks, "on g()\nreturn 1\nend g");
  EXPECT_TRUE(testsupport::runTask(quick->executeWithAppleEvent(callOf("g"))));
  for (auto& signal : signals)
    signal.emit(boost::asio::cancellation_type::terminal);
  context.run();
  EXPECT_EQ(sleepers(), 0);
}

TEST_F(ScriptTasks, QueueBehindABoundAndLeaveTheQueueWhenCancelled) {
  scripting::InterpreterScriptTasks tasks(interpreter, std::make_shared<platform::WorkerThreads>(1));
  const auto waiting = task(tasks, "on f()\ndelay 1000\nend f");
  boost::asio::io_context context;
  boost::asio::cancellation_signal first, second;
  std::vector<std::string> ended;
  const auto note = [&](const std::string& name) {
    return [&ended, name](std::exception_ptr thrown, Result) { ended.push_back(name + (thrown ? " stopped" : "")); };
  };
  boost::asio::co_spawn(context, waiting->executeWithAppleEvent(callOf("f")),
                        boost::asio::bind_cancellation_slot(first.slot(), note("first")));
  boost::asio::co_spawn(context, waiting->executeWithAppleEvent(callOf("f")),
                        boost::asio::bind_cancellation_slot(second.slot(), note("second")));
  context.poll();
  awaitSleepers(1);
  second.emit(boost::asio::cancellation_type::terminal);
  context.poll();
  EXPECT_THAT(ended, testing::ElementsAre("second stopped"));
  first.emit(boost::asio::cancellation_type::terminal);
  context.run();
  EXPECT_THAT(ended, testing::ElementsAre("second stopped", "first stopped"));
}

TEST(DescriptorConversion, GivesIntegersBeyond32BitsAsReals) {
  const auto descriptor = scripting::descriptorOf(applescript::Value(std::int64_t{1} << 40));
  EXPECT_EQ(descriptor.doubleValue(), 1099511627776.0);
  EXPECT_EQ(*scripting::valueOf(AppleEventDescriptor::integer(-3)).get<std::int64_t>(), -3);
  EXPECT_TRUE(scripting::valueOf(AppleEventDescriptor()).isMissing());
}

} // namespace
