#pragma once

#include "applescript/values/Value.h"
#include "platform/Rectangle.h"
#include "scripting/model/ObjectClass.h"
#include "scripting/systemevents/AttributeClass.h"
#include "scripting/systemevents/SystemEventsTerminology.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

/// The properties of windows and of the elements in them, and the attributes that scripts ask for by the names of the
/// Mac's accessibility interface. Objects are those of UIElementClasses.h.
namespace tabwright::scripting {

namespace uielement {
/// The title of a window; `missing value` for an element without a name.
Found name(EventScope& scope, Object object);
Found description(EventScope& scope, Object object); ///< the application's, else the role's
/// The application's alone; `missing value` where it has none.
Found accessibilityDescription(EventScope& scope, Object object);
/// Such as "AXButton"; a modal dialog is an "AXSheet".
Found role(EventScope& scope, Object object);
/// `missing value` for most elements.
Found subrole(EventScope& scope, Object object);
/// The words of its class, such as "text field".
Found roleDescription(EventScope& scope, Object object);
/// 1 or 0 for what can be checked, a real for sliders and the like, else its text; `missing value` for windows and what
/// has no value. Asks the application for numbers and texts.
Found value(EventScope& scope, Object object);
/// False for what is greyed out; windows are always enabled.
Found isEnabled(EventScope& scope, Object object);
/// True for the element, or the window, that has the keyboard.
Found isFocused(EventScope& scope, Object object);
/// True for a selected row, tab and the like.
Found isSelected(EventScope& scope, Object object);
Found position(EventScope& scope, Object object); ///< {x, y} on the screen in pixels
Found size(EventScope& scope, Object object);     ///< {width, height}

/// Its place on the screen; nothing for an element that can't tell.
[[nodiscard]] std::optional<platform::Rectangle> placeOf(EventScope& scope, Object object);
/// Two whole numbers from a list; throws ScriptError −1700 for anything else.
[[nodiscard]] std::pair<int, int> requirePair(const applescript::Value& value);

/// Checks, fills in or moves an element, by its role. Throws −10006 for one without a value, −1700 for a value of
/// another kind, and a platform::Failure where the application refuses.
void setValue(EventScope& scope, Object object, const applescript::Value& value);
/// Gives an element the keyboard, or brings a window to the front. `false` does nothing.
void setFocused(EventScope& scope, Object object, const applescript::Value& value);
/// Moves a window; −10006 for anything else.
void setPosition(EventScope& scope, Object object, const applescript::Value& value);
/// Gives a window another size; −10006 for anything else.
void setSize(EventScope& scope, Object object, const applescript::Value& value);
} // namespace uielement

/// All but `class` and `entire contents`.
inline constexpr std::array uiElementProperties{
    PropertyRow{applescript::fourCharCode("pnam"), uielement::name},
    PropertyRow{systemevents::description, uielement::description},
    PropertyRow{systemevents::accessibilityDescription, uielement::accessibilityDescription},
    PropertyRow{systemevents::role, uielement::role},
    PropertyRow{systemevents::subrole, uielement::subrole},
    PropertyRow{systemevents::roleDescription, uielement::roleDescription},
    PropertyRow{systemevents::value, uielement::value, uielement::setValue},
    PropertyRow{systemevents::enabled, uielement::isEnabled},
    PropertyRow{systemevents::focused, uielement::isFocused, uielement::setFocused},
    PropertyRow{systemevents::selected, uielement::isSelected},
    PropertyRow{systemevents::position, uielement::position, uielement::setPosition},
    PropertyRow{systemevents::size, uielement::size, uielement::setSize},
};

/// Those of all elements, and behind them those that only windows have.
[[nodiscard]] std::span<const AttributeRow> uiElementAttributes();
/// The number of those at the end that only windows have.
[[nodiscard]] std::size_t windowAttributeCount();

} // namespace tabwright::scripting
