#pragma once

#include "applescript/terminology/FourCharCode.h"
#include "applescript/values/Value.h"
#include "scripting/browser/BrowserScope.h"
#include "scripting/model/ObjectModel.h"

#include <optional>
#include <utility>
#include <vector>

namespace tabwright::scripting {

/// The request of a `make` command, however it was written: `make new tab at end of tabs of w with properties {URL:u}`,
/// `make tab in w`, `make document`.
struct MakeRequest {
  applescript::FourCharCode elementClass = 0;
  std::optional<InsertionPlace> place;
  std::vector<std::pair<applescript::FourCharCode, applescript::Value>> properties;

  /// The property's value; null when it was not given.
  [[nodiscard]] const applescript::Value* find(applescript::FourCharCode property) const;
};

/// Reads the event. Throws −1715 when no class was given, and what resolving the place throws.
[[nodiscard]] MakeRequest readMakeRequest(BrowserScope& scope);

} // namespace tabwright::scripting
