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
  platform::Accessibility& accessibility;
  platform::WindowSystem& windows;
  platform::Keyboard& keyboard;
  platform::InstalledApplications& installed;
  platform::Clock& clock;
  const targets::TargetContextManager& targets;
  BrowserControls& browserControls;
};

} // namespace tabwright::automation
