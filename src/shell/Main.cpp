// The members are made in the order in which they use each other, and go in the opposite one.
#include "shell/Main.h"

#include "platform/Logger.h"
#include "shell/Varn.h"

#include <utility>

namespace tabwright::shell {

namespace {

const platform::Logger mainLog("Main");

} // namespace

Main::Main(const Surroundings& surroundings)
    : application_(surroundings.application), keys_(surroundings.defaults),
      defaultsManager_(surroundings.defaults, keys_), appState_(surroundings.application, keys_),
      updateManager_(appState_, surroundings.makeUpdateController), shutdown_({.appState = appState_,
                                                                               .application = surroundings.application,
                                                                               .clock = surroundings.clock,
                                                                               .background = surroundings.background,
                                                                               .mainActor = surroundings.mainActor}),
      delegate_({.application = surroundings.application,
                 .appState = appState_,
                 .defaultsManager = defaultsManager_,
                 .shutdown = shutdown_,
                 .clock = surroundings.clock,
                 .mainActor = surroundings.mainActor,
                 .errorTracking = surroundings.errorTracking}) {
  application_.setDelegate(&delegate_);
  mainLog.info("{}", Varn::App::identificationLine());
}

Main::~Main() {
  // The application outlives this, and would notify an object that has gone.
  application_.setDelegate(nullptr);
}

void Main::mainContentAppeared() {
  application_.setAllowsAutomaticWindowTabbing(false);
  if (std::exchange(hasContentAppeared_, true))
    return;
  if (UpdateController* controller = updateManager_.sharedUpdaterController())
    controller->startUpdater();
}

} // namespace tabwright::shell
