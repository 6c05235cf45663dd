#pragma once

#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "shell/AppState.h"
#include "shell/AppUpdateManager.h"
#include "shell/Application.h"
#include "shell/DefaultsKeys.h"
#include "shell/DelayedShutdown.h"
#include "shell/ErrorTracking.h"
#include "shell/MainDelegate.h"
#include "shell/UpdateController.h"
#include "shell/UserDefaultsManager.h"

#include <boost/asio/any_io_executor.hpp>

namespace tabwright::shell {

/// The entry of the program: makes the shared objects of the shell and holds them for the process's life. Made on the
/// main actor, before the application has finished launching.
///
///     WindowlessApplication application(Launch::hidden, [&] { mainLoop.stop(); });
///     Main main({.application = application, .defaults = defaults, .clock = clock,
///                .mainActor = mainLoop.get_executor(), .background = pool.get_executor()});
///     application.finishLaunching(); // now the quit is armed
///     mainLoop.run();
class Main {
public:
  /// All that the program runs on; all of it outlives the entry, and so do the threads that run the executors.
  struct Surroundings {
    Application& application;
    platform::UserDefaults& defaults;
    platform::Clock& clock;
    boost::asio::any_io_executor mainActor;         ///< one thread, or a strand
    boost::asio::any_io_executor background;        ///< any number of threads
    ErrorTracking* errorTracking = nullptr;         ///< null: nothing is reported to anyone
    MakeUpdateController makeUpdateController = {}; ///< empty: nobody looks for updates
  };

  /// Becomes the application's delegate, and logs which program this is.
  explicit Main(const Surroundings& surroundings);
  ~Main();
  Main(const Main&) = delete;
  Main& operator=(const Main&) = delete;

  /// The shared objects of the process; they live as long as this.
  [[nodiscard]] const DefaultsKeys& keys() const noexcept { return keys_; }
  [[nodiscard]] UserDefaultsManager& defaultsManager() noexcept { return defaultsManager_; }
  /// To be touched on the main actor, but for what it says may be read anywhere.
  [[nodiscard]] AppState& appState() noexcept { return appState_; }
  /// To be touched on the main actor.
  [[nodiscard]] AppUpdateManager& updateManager() noexcept { return updateManager_; }
  /// Handed to actions, which put the quit off.
  [[nodiscard]] DelayedShutdown& shutdown() noexcept { return shutdown_; }

  /// To be called by the main window whenever its content appears. The first time starts the updater.
  void mainContentAppeared();

private:
  Application& application_;
  bool hasContentAppeared_ = false;
  DefaultsKeys keys_;
  UserDefaultsManager defaultsManager_;
  AppState appState_;
  AppUpdateManager updateManager_;
  DelayedShutdown shutdown_;
  MainDelegate delegate_;
};

} // namespace tabwright::shell
