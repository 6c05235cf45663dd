#pragma once

#include "actions/ShutdownScheduler.h"
#include "platform/Clock.h"
#include "shell/AppState.h"
#include "shell/Application.h"
#include "shell/ApplicationDelegate.h"
#include "shell/ErrorTracking.h"
#include "shell/UserDefaultsManager.h"

#include <boost/asio/any_io_executor.hpp>

namespace tabwright::shell {

/// The order of the start of the process, and its end. On the main actor.
class MainDelegate final : public ApplicationDelegate {
public:
  /// All that the delegate works with; all of it outlives the delegate and what it has posted to the main actor.
  struct Surroundings {
    Application& application;
    const AppState& appState;
    UserDefaultsManager& defaultsManager;
    actions::ShutdownScheduler& shutdown;
    platform::Clock& clock;
    boost::asio::any_io_executor mainActor;
    ErrorTracking* errorTracking = nullptr; ///< null: nothing is reported to anyone
  };

  explicit MainDelegate(Surroundings surroundings);

  /// Records the first launch, starts error tracking, has surplus windows closed a little later, and arms the quit of a
  /// hidden process.
  void applicationDidFinishLaunching() override;
  /// Logs the end. Nothing is saved or finished first.
  void applicationWillTerminate() override;

private:
  Surroundings surroundings_;
};

} // namespace tabwright::shell
