#pragma once

#include "actions/ShutdownScheduler.h"
#include "platform/Clock.h"
#include "shell/AppState.h"
#include "shell/Application.h"

#include <boost/asio/any_io_executor.hpp>

#include <chrono>
#include <memory>

namespace tabwright::shell {

/// The self-timed quit of a process that was started hidden: 120.1 seconds after the last `scheduleShutdown` it
/// terminates the application, whatever runs then. There is no count of running actions, and nothing else puts the quit
/// off or cancels it. In a process that the user started it does nothing.
class DelayedShutdown final : public actions::ShutdownScheduler {
public:
  /// From the start of the last action to the quit. No setting changes it.
  static constexpr std::chrono::milliseconds delay = std::chrono::seconds(120) + std::chrono::milliseconds(100);

  /// All that the timer works with. References and executors' contexts outlive the timer.
  struct Surroundings {
    const AppState& appState;
    Application& application;
    platform::Clock& clock;
    boost::asio::any_io_executor background; ///< where the timer waits
    boost::asio::any_io_executor mainActor;  ///< where the application is touched
  };

  explicit DelayedShutdown(Surroundings surroundings);
  /// Cancels the quit, unless it is under way on the main actor already.
  ~DelayedShutdown() override;
  DelayedShutdown(const DelayedShutdown&) = delete;
  DelayedShutdown& operator=(const DelayedShutdown&) = delete;

  /// Arms the quit in place of the one that was armed; the exchange is one step. From any thread.
  void scheduleShutdown() override;

private:
  /// One sleep, which can be cancelled.
  class Job;
  /// The surroundings and the job that is pending; shared with jobs, which hold it weakly.
  struct Pending;

  static void fire(const std::weak_ptr<Pending>& pending, const std::shared_ptr<Job>& job);

  std::shared_ptr<Pending> pending_;
};

} // namespace tabwright::shell
