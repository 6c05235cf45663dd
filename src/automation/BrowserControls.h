#pragma once

#include "platform/CallLimits.h"
#include "targets/BrowserProbe.h"

namespace tabwright::automation {

/// Browsers of the Chromium family keep their own controls from the accessibility bus until they are told to show them,
/// which the bus itself can't do.
class BrowserControls {
public:
  virtual ~BrowserControls() = default;

  /// Makes this browser show its toolbar and menus on the accessibility bus, but not the content of its pages, which
  /// would slow them down. Returns when it has been told to; its elements appear within a second or so. They stay as
  /// long as the browser runs or this object lives; to ask again costs nothing. Opens no tab and takes no focus.
  ///
  /// Throws a platform::Failure when the browser can't be reached, or knows no way.
  virtual void show(const targets::RunningApplication& browser, const platform::CallLimits& limits) = 0;
};

} // namespace tabwright::automation
