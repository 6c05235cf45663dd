#pragma once

#include "platform/AppleEvent.h"
#include "platform/UserAppleScriptTask.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// Script tasks that give a test's answers instead of running anything.
class ModelScriptTasks final : public platform::UserAppleScriptTasks {
public:
  using Result = std::optional<platform::AppleEventDescriptor>;

  /// Called when a task is made; throw here for a file that can't be read.
  std::function<void(const std::filesystem::path&)> onInit = [](const std::filesystem::path&) {};
  /// Answers a run; by default nothing.
  std::function<platform::Task<Result>(const std::filesystem::path&)> onExecute =
      [](const std::filesystem::path&) -> platform::Task<Result> { co_return std::nullopt; };
  std::vector<platform::AppleEvent> events;

  /// Every run yields `result`.
  void answer(platform::AppleEventDescriptor result) {
    onExecute = [result = std::move(result)](const std::filesystem::path&) { return yield(result); };
  }

  /// Every run yields a successful triple.
  void answerSuccess(std::string payload, std::string version = "") {
    using D = platform::AppleEventDescriptor;
    answer(D::list({D::boolean(true), D::string(std::move(version)), D::string(std::move(payload))}));
  }

  std::unique_ptr<platform::UserAppleScriptTask> initWithURL(const platform::WrittenFile& file) override {
    const std::filesystem::path& script = file.path();
    onInit(script);
    return std::make_unique<ModelTask>(*this, script);
  }

private:
  class ModelTask final : public platform::UserAppleScriptTask {
  public:
    ModelTask(ModelScriptTasks& tasks, std::filesystem::path script) : tasks_(tasks), script_(std::move(script)) {}
    platform::Task<Result> executeWithAppleEvent(platform::AppleEvent event) override {
      tasks_.events.push_back(std::move(event));
      return tasks_.onExecute(script_);
    }

  private:
    ModelScriptTasks& tasks_;
    std::filesystem::path script_;
  };

  static platform::Task<Result> yield(Result result) { co_return result; }
};

} // namespace tabwright::testsupport
