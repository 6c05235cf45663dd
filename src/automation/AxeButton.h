#pragma once

#include "automation/AxeElement.h"
#include "targets/BrowserProbe.h"

#include <string>
#include <vector>

namespace tabwright::automation {

/// A button in a window of a running application. Nothing operates on one yet.
struct AxeButton {
  targets::RunningApplication app;
  AxeElement element;
  std::vector<std::string> possibleTitleValues; ///< filled when its title is first compared
};

} // namespace tabwright::automation
