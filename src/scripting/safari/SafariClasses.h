#pragma once

#include "scripting/browser/BrowserScope.h"
#include "scripting/model/ObjectModel.h"

#include <cstddef>

namespace tabwright::scripting {

/// The classes of Safari's dictionary as tables over BrowserScope: application, document, window, tab. One of each
/// lives as long as the program: commands tell the class of an object by the address. `first` of a document is its
/// window's position.
[[nodiscard]] const ObjectModel& safariModel();
[[nodiscard]] const ObjectClass& safariWindowClass();
[[nodiscard]] const ObjectClass& safariDocumentClass();
[[nodiscard]] const ObjectClass& safariTabClass();

/// The current tab of a window's (or document's) position in the snapshot; nothing when it has none.
[[nodiscard]] std::optional<Object> currentTabOf(BrowserScope& scope, Object window);
/// Specifiers of a window and of a tab, which need not be in the snapshot yet. `index` is 1-based.
[[nodiscard]] applescript::SpecifierPointer safariWindowSpecifier(BrowserScope& scope, WindowID id);
[[nodiscard]] applescript::SpecifierPointer safariTabSpecifier(applescript::SpecifierPointer window, std::size_t index);

} // namespace tabwright::scripting
