#pragma once

#include "scripting/model/ObjectClass.h"
#include "scripting/systemevents/SystemEventsScope.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

/// The classes of windows, of the elements in them, and of the attributes and actions of both, as tables over
/// SystemEventsScope. In their objects `first` is an element's number in the scope's tree, and `second` the position of
/// an attribute or action.
namespace tabwright::scripting {

/// Windows that aren't dialogs of others.
extern const ObjectClass systemWindowClass;
/// One for each kind of elements; the first is the wider class.
extern const std::array<ObjectClass, uiElementKinds.size()> uiElementClasses;

/// The windows of a process that are no dialogs of others, in its order.
[[nodiscard]] std::size_t systemWindowCount(EventScope& scope, Object process);
/// `position` counts from 0 and is below that number.
[[nodiscard]] Object systemWindowAt(EventScope& scope, Object process, std::size_t position);
/// Finds dialogs too.
[[nodiscard]] std::optional<Object> systemWindowByName(EventScope& scope, Object process, std::string_view name);

/// Specifier of the application process at a position.
[[nodiscard]] applescript::SpecifierPointer processSpecifierAt(EventScope& scope, std::int64_t position);

/// True for windows, their dialogs, and elements of all kinds.
[[nodiscard]] bool isUIElement(Object object);
[[nodiscard]] bool isUIElementAction(Object object);

/// Does an action of an element's, by the Mac's name, such as "AXPress". False, and nothing is done, when the element
/// hasn't it. Throws a platform::Failure.
bool performUIElementAction(SystemEventsScope& scope, Object element, std::string_view name);
/// Performs an object of the class action.
void performUIElementAction(SystemEventsScope& scope, Object action);

} // namespace tabwright::scripting
