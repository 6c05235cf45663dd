#pragma once

#include "platform/AccessibleElement.h"
#include "scripting/model/ObjectClass.h"
#include "scripting/systemevents/SystemEventsScope.h"

/// The operations of scripts on elements in windows, by commands or by setting properties. Objects are those of
/// UIElementClasses.h. Both throw a platform::Failure for an element that can't do it.
namespace tabwright::scripting::uielement {

/// Presses an element. A row that can't be pressed is selected, any other element clicked at with the pointer, in its
/// middle.
void press(SystemEventsScope& scope, Object element);

/// Selects an element that is no window, or takes it out of the selection.
void select(SystemEventsScope& scope, Object element, platform::AccessibleSelection selection);

} // namespace tabwright::scripting::uielement
