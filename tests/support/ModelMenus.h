#pragma once

#include "support/ModelAccessibility.h"

#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// A menu item as a test writes it: `{"File", {{"Open..."}, separator, {"Quit"}}}`.
struct ModelItem {
  std::string title;
  std::vector<ModelItem> below{};
  bool isEnabled = true;
  bool isHidden = false;
};
inline const ModelItem separator{"---"};

/// The ways in which toolkits publish the same menus.
enum class Toolkit { gtk, qt };

/// The element of an item in a closed menu, or in the bar.
inline ModelElement menuElement(const ModelItem& item, Toolkit toolkit, bool isInBar = false) {
  using enum platform::AccessibleRole;
  using enum platform::AccessibleState;
  const bool isGtk = toolkit == Toolkit::gtk;
  ModelElement element;
  element.role = item.title == testsupport::separator.title ? platform::AccessibleRole::separator
                 : isGtk && !item.below.empty()             ? menu
                                                            : menuItem;
  if (element.role != platform::AccessibleRole::separator)
    element.name = isGtk && !isInBar ? item.title + "      " : item.title;
  if (item.isEnabled && !(item.isHidden && !isGtk))
    element.states = {enabled, sensitive};
  if ((isGtk && !item.isHidden) || isInBar)
    element.states.push_back(visible);
  std::vector<ModelElement> children;
  for (const ModelItem& each : item.below)
    children.push_back(menuElement(each, toolkit));
  if (isGtk || children.empty())
    element.children = std::move(children);
  else
    element.children.push_back({.role = popupMenu, .states = {enabled, sensitive}, .children = std::move(children)});
  return element;
}

inline ModelElement menuBarElement(const std::vector<ModelItem>& items, Toolkit toolkit) {
  ModelElement bar{.role = platform::AccessibleRole::menuBar};
  for (const ModelItem& item : items)
    bar.children.push_back(menuElement(item, toolkit, true));
  return bar;
}

/// An application with one window, whose menu bar stands below some fillers.
inline ModelElement applicationWithMenus(const std::vector<ModelItem>& items, Toolkit toolkit) {
  ModelElement element = menuBarElement(items, toolkit);
  for (int filler = 0; filler < 2; ++filler)
    element = {.role = platform::AccessibleRole::filler, .children = {std::move(element)}};
  ModelElement frame{.role = platform::AccessibleRole::frame, .name = "Untitled", .children = {std::move(element)}};
  return {.role = platform::AccessibleRole::application, .children = {std::move(frame)}};
}

} // namespace tabwright::testsupport
