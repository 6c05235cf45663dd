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
  /// Never 0 in a request that was read.
  applescript::FourCharCode elementClass = 0;
  /// Nothing where the command names no place; the family then takes a place of its own.
  std::optional<InsertionPlace> place;
  /// In the order of the record. Words that no dictionary has come with code 0.
  std::vector<std::pair<applescript::FourCharCode, applescript::Value>> properties;

  /// The property's value; null when it was not given.
  [[nodiscard]] const applescript::Value* find(applescript::FourCharCode property) const;
};

/// Reads the event. Throws −1715 when no class was given, −1700 when the properties are no record, and what resolving
/// the place throws.
[[nodiscard]] MakeRequest readMakeRequest(BrowserScope& scope);

} // namespace tabwright::scripting
