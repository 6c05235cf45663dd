#include "shell/AppUpdateManager.h"

#include "platform/Logger.h"
#include "shell/Varn.h"

#include <utility>

namespace tabwright::shell {

namespace {

const platform::Logger updateLog("AppUpdateManager");

} // namespace

AppUpdateManager::AppUpdateManager(AppState& appState, MakeUpdateController make)
    : appState_(appState), make_(std::move(make)) {}

UpdateController* AppUpdateManager::sharedUpdaterController() {
  if (!updaterController_ && make_)
    updaterController_ = make_(*this);
  return updaterController_.get();
}

void AppUpdateManager::checkForUpdates() {
  checkForUpdatesOnDemand();
}

void AppUpdateManager::checkForUpdatesOnDemand() {
  updateLog.info("Checking Appcast on demand");
  if (UpdateController* controller = sharedUpdaterController())
    controller->checkForUpdates();
}

std::string AppUpdateManager::feedURLStringForUpdater() const {
  return std::string(Varn::App::updateFeed());
}

void AppUpdateManager::updaterDidFindValidUpdate() {
  updateLog.debug("didFindValidUpdate");
  appState_.isAppUpdateAvailable.set(true);
}

void AppUpdateManager::updaterDidNotFindUpdate() {
  updateLog.debug("No new version available");
  appState_.isAppUpdateAvailable.set(false);
}

void AppUpdateManager::updaterDidFinishLoadingAppcast() {
  updateLog.debug("didFinishLoading");
}

void AppUpdateManager::updaterDidFinishUpdateCycleForUpdateCheck() {
  updateLog.debug("didFinishUpdateCycleFor");
}

} // namespace tabwright::shell
