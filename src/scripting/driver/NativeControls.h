#pragma once

#include "devtools/Session.h"
#include "devtools/Waiting.h"
#include "platform/Mutex.h"

#include <memory>

namespace tabwright::scripting {

/// Makes a browser show its own controls (toolbar, menus) on the accessibility bus.
///
/// They are shown for as long as this object lives: the switch is on a hidden page of the browser's, and holds while
/// that page is there. Pages stay unread, since reading them would make each several times slower. Safe to use from any
/// thread.
class NativeControls {
public:
  explicit NativeControls(std::shared_ptr<devtools::Connection> connection) : connection_(std::move(connection)) {}

  /// Returns when the browser has been told to; the elements appear within a second. Costs nothing the second time.
  /// Callers take turns. Throws DevToolsFailure; DriverFault `refused` for a browser whose page has no such switch.
  void show(const platform::CallLimits& limits);

private:
  const std::shared_ptr<devtools::Connection> connection_;
  devtools::Turn showing_;
  platform::Mutex mutex_;
  std::shared_ptr<devtools::Session> page_ GUARDED_BY(mutex_); ///< with the switch on
};

} // namespace tabwright::scripting
