#include "scripting/systemevents/UIElementCommands.h"

#include "platform/DesktopFault.h"
#include "scripting/systemevents/UIElementClasses.h"
#include "scripting/systemevents/UIElementProperties.h"

namespace tabwright::scripting::uielement {

using platform::AccessibleSelection;
using platform::DesktopFault;

void press(SystemEventsScope& scope, Object element) {
  if (performUIElementAction(scope, element, "AXPress"))
    return;
  if (scope.tree().node(element.first).row) // which may be scrolled out of sight
    return select(scope, element, AccessibleSelection::only);
  const std::optional<platform::Rectangle> place = placeOf(scope, element);
  const platform::AccessibleFacts& facts = scope.tree().facts(element.first);
  // GTK tells no place of such a cell, and Qt one outside.
  const bool isInSight = place && facts.states && facts.states->has(platform::AccessibleState::showing);
  if (scope.tree().isInGrid(element.first) && !isInSight)
    throw platform::failure(DesktopFault::elementRefused,
                            "it is scrolled out of sight. In some tables it comes into sight when it is focused");
  if (!place)
    throw platform::failure(DesktopFault::elementRefused, "nothing happens when it is pressed");
  scope.desktop().clickAt(place->x + place->width / 2, place->y + place->height / 2);
}

void select(SystemEventsScope& scope, Object element, AccessibleSelection selection) {
  UIElementTree& tree = scope.tree();
  const UIElementTree::Node& node = tree.node(element.first);
  platform::Accessibility& accessibility = scope.desktop().elements().accessibility();
  if (node.row)
    return accessibility.selectRow(tree.element(*node.parent), static_cast<int>(*node.row), selection, scope.limits());
  if (node.role->kind == uiElementKind("menu item"))
    throw platform::failure(DesktopFault::elementRefused, "a menu item is clicked, not selected");
  try {
    accessibility.select(node.element, selection, scope.limits());
  } catch (const platform::DesktopFailure& failure) {
    // Tabs of Qt, and radio buttons, are selected by a press.
    const bool isPressed =
        failure.kind() == DesktopFault::elementRefused && node.role->kind == uiElementKind("radio button") &&
        selection != AccessibleSelection::removed && performUIElementAction(scope, element, "AXPress");
    if (!isPressed)
      throw;
  }
}

} // namespace tabwright::scripting::uielement
