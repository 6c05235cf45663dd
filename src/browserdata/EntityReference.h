#pragma once

#include "engine/TargetContext.h"

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::browserdata {

/// The ids that name a tab or window.
struct EntityReference {
  /// The browser, always one in particular: a reference to the frontmost one is none.
  engine::TargetContext targetContext;
  std::string fullID; ///< begins with the context's id
};

/// Reads a `fullID`: a supported browser's id or short name, a colon, and the browser's own reference, which may hold
/// colons. Nothing for a text of another form.
[[nodiscard]] std::optional<EntityReference> readReference(std::string_view text);

/// Throws `intents::ValueError` for a text with anything in it that a reference never holds: blanks, control
/// characters, quotes, backslashes.
void requireReference(std::string_view fullID);

} // namespace tabwright::browserdata
