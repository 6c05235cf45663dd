#include "shell/MainDelegate.h"

#include "platform/Logger.h"
#include "shell/Varn.h"

#include <boost/asio/post.hpp>

#include <utility>

namespace tabwright::shell {

namespace {

const platform::Logger delegateLog("MainDelegate");

} // namespace

MainDelegate::MainDelegate(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

void MainDelegate::applicationDidFinishLaunching() {
  // 1. Tell which kind of launch this is.
  if (surroundings_.appState.isAppRunningHidden)
    delegateLog.debug("Launched by action/service");
  // 2. The first launch of all is remembered.
  surroundings_.defaultsManager.recordFirstLaunch(surroundings_.clock);
  // 3. From here on failures are reported.
  if (surroundings_.errorTracking) {
    surroundings_.errorTracking->start();
    surroundings_.errorTracking->reportLaunchOfNewRelease();
  }
  // 4. Windows that were restored beside the main one go, as soon as the main actor has time.
  boost::asio::post(surroundings_.mainActor,
                    [&application = surroundings_.application] { Varn::Windows::cleanUp(application); });
  // 5. A hidden process quits by itself even if no action ever comes.
  if (surroundings_.appState.isAppRunningHidden)
    surroundings_.shutdown.scheduleShutdown();
}

void MainDelegate::applicationWillTerminate() {
  delegateLog.debug("Shutting down");
}

} // namespace tabwright::shell
