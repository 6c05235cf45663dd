#pragma once

#include "automation/AxeElement.h"
#include "targets/BrowserProbe.h"

namespace tabwright::automation {

/// A window of a running application. Nothing operates on one yet.
struct AxeWindow {
  targets::RunningApplication app;
  AxeElement element;
};

} // namespace tabwright::automation
