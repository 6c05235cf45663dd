// Elements are read a level at a time: one call asks about all children of all containers at hand. Layout containers
// are then replaced by what they hold, which the next round reads, until nothing unread is left; so a level of a
// script's is some rounds, however many elements it has. Nodes stay where they are as more are added, so numbers and
// references to them hold.
#include "scripting/systemevents/UIElementTree.h"

#include "platform/BrowserTable.h"
#include "platform/DesktopFault.h"
#include "platform/Sleep.h"
#include "platform/Whitespace.h"

#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <tuple>

namespace tabwright::scripting {

using platform::AccessibleElement;
using platform::AccessibleFacts;

namespace {

// Asked of every element at once; everything else is a question of its own, when a script wants it.
constexpr platform::AccessibleParts nodeParts{
    .name = true, .description = true, .role = true, .states = true, .children = true};

/// An application may hold itself; no window is nested deeper.
constexpr int deepest = 100;

/// For how long a browser that was told to show its controls is waited for.
constexpr std::chrono::milliseconds longestShowing{1500};

/// Some applications end names in blanks.
std::string trimmed(const std::optional<std::string>& name) {
  return std::string(platform::trimmingWhitespaceAndNewlines(name.value_or("")));
}

int distance(const platform::Rectangle& left, const platform::Rectangle& right) {
  return std::abs(left.x - right.x) + std::abs(left.y - right.y) + std::abs(left.width - right.width) +
         std::abs(left.height - right.height);
}

/// An element that was found below a container, and what is to stand in its place while that is being read.
struct Place {
  std::size_t container = 0; ///< position among the containers that are read
  AccessibleElement element;
  std::optional<AccessibleFacts> facts;
};

} // namespace

UIElementTree::Number UIElementTree::window(const DesktopProcess& process, std::int64_t processPosition,
                                            const DesktopWindow& window) {
  const auto [entry, isNew] = windows_.try_emplace(&window, static_cast<Number>(nodes_.size()));
  if (isNew) {
    Node node;
    node.process = &process;
    node.processPosition = processPosition;
    node.window = &window;
    nodes_.push_back(std::move(node));
  }
  return entry->second;
}

std::vector<UIElementTree::Number> UIElementTree::sheets(Number number) {
  const Node& owner = node(number);
  std::vector<Number> sheets;
  if (!owner.window)
    return sheets;
  for (const DesktopWindow& each : owner.process->windows) {
    if (each.dialogOf == owner.window->id)
      sheets.push_back(window(*owner.process, owner.processPosition, each));
  }
  return sheets;
}

/// The application's windows don't tell the window system's numbers, so they are known by title, and those of the same
/// title by their place.
AccessibleElement UIElementTree::findWindow(const Node& window) {
  DesktopProcess process = *window.process;
  if (window.window->shownBy != 0) {
    process.pid = window.window->shownBy;
    // The portal's process shows it, and is none of the application's kind.
    process.bundleIdentifier.clear();
  }
  const AccessibleElement root = elements_.application(process, limits_);
  const std::vector<AccessibleFacts> roots = elements_.accessibility().read({&root, 1}, {.children = true}, limits_);
  const std::vector<AccessibleElement> candidates = roots.front().children.value_or(std::vector<AccessibleElement>{});
  const std::vector<AccessibleFacts> facts =
      elements_.accessibility().read(candidates, {.name = true, .extents = true}, limits_);
  const auto unlikeness = [](const AccessibleFacts& each, const DesktopWindow& like) {
    return std::tuple(trimmed(each.name) != trimmed(like.name), each.extents ? distance(*each.extents, like.place) : 0);
  };
  const auto best = std::ranges::min_element(
      facts, {}, [&](const AccessibleFacts& each) { return unlikeness(each, *window.window); });
  if (best == facts.end())
    throw platform::failure(platform::DesktopFault::elementGone);
  // Chromium doesn't show its dialogs that are another toolkit's.
  const bool isAnothers = std::ranges::any_of(window.process->windows, [&](const DesktopWindow& other) {
    return &other != window.window && unlikeness(*best, other) == std::tuple(false, 0);
  });
  if (isAnothers && trimmed(best->name) != trimmed(window.window->name))
    throw platform::failure(platform::DesktopFault::notShown, fmt::format("“{}”", window.window->name));
  return candidates[static_cast<std::size_t>(best - facts.begin())];
}

const AccessibleElement& UIElementTree::element(Number number) {
  Node& node = nodes_.at(static_cast<std::size_t>(number));
  if (node.window && node.element.application.empty()) {
    node.element = findWindow(node);
    node.facts = elements_.accessibility().read({&node.element, 1}, nodeParts, limits_).front();
    if (node.window->shownBy == 0 && platform::isOfChromiumFamily(node.process->bundleIdentifier))
      awaitControls(node);
  }
  return node.element;
}

void UIElementTree::awaitControls(Node& window) {
  const platform::CallLimits showing = limits_.within(longestShowing);
  // A browser shows its controls some time after it was told to, and has none in its windows before.
  while (window.facts.children.value_or(std::vector<AccessibleElement>{}).empty() && !showing.hasPassed()) {
    platform::sleepWithin(showing, std::chrono::milliseconds(20));
    window.facts = elements_.accessibility().read({&window.element, 1}, nodeParts, limits_).front();
  }
}

void UIElementTree::readChildren(const std::vector<Number>& containers) {
  std::vector<Place> places;
  const auto unread = [](std::size_t container, const AccessibleFacts& facts, std::vector<Place>& into) {
    for (const AccessibleElement& child : facts.children.value_or(std::vector<AccessibleElement>{}))
      into.push_back({container, child, std::nullopt});
  };
  for (std::size_t each = 0; each < containers.size(); ++each) {
    (void)element(containers[each]);
    unread(each, node(containers[each]).facts, places);
  }
  // Each round reads what isn't read yet, and puts what layout containers hold in their places.
  for (int depth = 0; depth < deepest; ++depth) {
    std::vector<AccessibleElement> elements;
    for (const Place& place : places) {
      if (!place.facts)
        elements.push_back(place.element);
    }
    if (elements.empty())
      break;
    std::vector<AccessibleFacts> facts = elements_.accessibility().read(elements, nodeParts, limits_);
    std::vector<Place> next;
    auto answer = facts.begin();
    for (Place& place : places) {
      // Read in a round before: it only waits for its neighbours.
      const bool isNew = !place.facts;
      if (isNew)
        place.facts = std::move(*answer++);
      if (isNew && isLeftOut(*place.facts))
        continue;
      if (isNew && isLayoutOnly(*place.facts))
        unread(place.container, *place.facts, next);
      else
        next.push_back(std::move(place));
    }
    places = std::move(next);
  }
  for (const Number container : containers)
    // The window's dialogs come before what is in it.
    nodes_.at(static_cast<std::size_t>(container)).children = sheets(container);
  for (Place& place : places) {
    // Nested deeper than any window is: left out.
    if (!place.facts)
      continue;
    Node& container = nodes_.at(static_cast<std::size_t>(containers[place.container]));
    Node node;
    node.process = container.process;
    node.processPosition = container.processPosition;
    node.parent = containers[place.container];
    node.role = &uiElementRole(*place.facts);
    node.element = std::move(place.element);
    node.facts = std::move(*place.facts);
    node.facts.name = trimmed(node.facts.name);
    container.children->push_back(static_cast<Number>(nodes_.size()));
    nodes_.push_back(std::move(node));
  }
}

const std::vector<UIElementTree::Number>& UIElementTree::children(Number container) {
  if (!node(container).children)
    readChildren({container});
  return *node(container).children;
}

std::vector<UIElementTree::Number> UIElementTree::everythingIn(Number container) {
  std::vector<Number> level{container};
  for (int depth = 0; depth < deepest && !level.empty(); ++depth) {
    // Those that the script has looked at before aren't read again.
    std::vector<Number> unread, next;
    std::ranges::copy_if(level, std::back_inserter(unread), [&](Number each) { return !node(each).children; });
    readChildren(unread);
    for (const Number each : level)
      next.insert(next.end(), node(each).children->begin(), node(each).children->end());
    level = std::move(next);
  }
  std::vector<Number> all;
  const auto gather = [&](const auto& self, Number each) -> void {
    if (!node(each).children)
      return;
    for (const Number child : *node(each).children) {
      all.push_back(child);
      self(self, child);
    }
  };
  gather(gather, container);
  return all;
}

const std::vector<UIElementAction>& UIElementTree::actions(Number number) {
  Node& owner = nodes_.at(static_cast<std::size_t>(number));
  if (!owner.actions && owner.window) {
    // The window system does it, so no application is asked.
    owner.actions = std::vector<UIElementAction>{{"AXRaise", 0}};
  } else if (!owner.actions) {
    const AccessibleFacts told = read(number, {.actions = true});
    owner.actions = uiElementActions(*owner.role, told.actions.value_or(std::vector<std::string>{}));
  }
  return *owner.actions;
}

AccessibleFacts UIElementTree::read(Number number, const platform::AccessibleParts& parts) {
  return elements_.accessibility().read({&element(number), 1}, parts, limits_).front();
}

} // namespace tabwright::scripting
