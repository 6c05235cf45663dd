#include "scripting/driver/BrowserRoad.h"

#include "scripting/driver/DriverFault.h"

namespace tabwright::scripting {

void requireEnded(platform::ProcessExit exit) {
  switch (exit) {
  case platform::ProcessExit::ended:
    return;
  case platform::ProcessExit::timedOut:
    throw platform::failure(DriverFault::timedOut);
  case platform::ProcessExit::stopped:
    throw platform::failure(DriverFault::stopped);
  }
}

} // namespace tabwright::scripting
