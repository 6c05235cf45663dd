#pragma once

#include "automation/AxeElement.h"
#include "platform/AccessibleElement.h"

#include <optional>
#include <span>
#include <vector>

/// Menus as toolkits publish them, translated into those of the Mac's accessibility interface. One place for all
/// sources of menus.
///
///     AXMenuBarItem, AXMenuItem   menu, menu item, check, radio and tearoff menu item; in a menu, separators too
///     AXMenu                      the popup menu below an item, as Qt has it, or made: GTK, Firefox and Chromium have
///                                 the items directly below the item that opens them
///     AXTitle                     the name, blanks at its end left out
///     AXEnabled                   enabled and sensitive
namespace tabwright::automation {

/// The parts of elements that the translation looks at.
inline constexpr platform::AccessibleParts menuParts{.name = true, .role = true, .states = true, .children = true};

/// The items of a bar or a menu, in order. `elements` are what the application has below it, `answers` what it told of
/// each. Other elements are left out, and so are items that are hidden: those that aren't visible while others of the
/// same menu are. In a closed menu of Qt none is, and hidden ones can't be told.
[[nodiscard]] std::vector<AxeElement> itemsOf(const AxeElement& barOrMenu,
                                              std::span<const platform::AccessibleElement> elements,
                                              std::span<const platform::AccessibleFacts> answers);

/// The menu of an item, nothing for one without. `only` is what the application told of the only element below an
/// item that may hold its menu.
[[nodiscard]] std::optional<AxeElement> menuOf(const AxeElement& item, const platform::AccessibleFacts* only);

} // namespace tabwright::automation
