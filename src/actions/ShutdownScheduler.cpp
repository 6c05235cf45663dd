#include "actions/ShutdownScheduler.h"

#include "platform/Logger.h"

namespace tabwright::actions {

void NoScheduledShutdown::scheduleShutdown() {
  static const platform::Logger log("DelayedShutdown");
  log.debug("Not started by service/action, no shutdown scheduling");
}

} // namespace tabwright::actions
