#pragma once

#include "automation/BrowserControls.h"
#include "platform/Accessibility.h"
#include "platform/Clock.h"
#include "platform/InstalledApplications.h"
#include "platform/Keyboard.h"
#include "platform/WindowSystem.h"
#include "targets/TargetContextManager.h"

namespace tabwright::automation {

/// The desktop as automation needs it. The program makes one; it and all that it names outlive every search.
struct DesktopServices {
  /// Elements of applications: menus, and the windows that they stand in.
  platform::Accessibility& accessibility;
  /// Tells the windows of all programs, and brings one to the front.
  platform::WindowSystem& windows;
  /// Keys to whichever window has the keyboard.
  platform::Keyboard& keyboard;
  /// Looked at to start an application that doesn't run.
  platform::InstalledApplications& installed;
  /// For the waits of coroutines, which hold no thread.
  platform::Clock& clock;
  /// Finds running applications by the ids of targets.
  const targets::TargetContextManager& targets;
  BrowserControls& browserControls;
};

} // namespace tabwright::automation
