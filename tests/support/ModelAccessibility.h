#pragma once

#include "platform/Accessibility.h"
#include "platform/DesktopFault.h"

#include <fmt/core.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tabwright::testsupport {

/// An element of a model application.
struct ModelElement {
  platform::AccessibleRole role = platform::AccessibleRole::panel;
  std::optional<std::string> name = ""; ///< nothing: the application doesn't answer for this one
  std::vector<platform::AccessibleState> states = {};
  std::vector<ModelElement> children = {};
  std::function<void()> onPress = [] {};
  std::string text = {}; ///< and its value, where it is a number
  std::vector<std::string> actions = {"click"};
  platform::Rectangle extents = {};
  /// Of a table. Its children are its rows; or, where they are none, the heads of its columns and its cells behind
  /// them.
  std::size_t columns = 0;
  bool isSelectable = false; ///< what is in it can be selected from outside
  std::optional<std::pair<double, double>> range = {};
  bool isImage = false;
};

/// Applications in memory, by their process numbers. An element's path is that of the positions that lead to it.
class ModelAccessibility final : public platform::Accessibility {
public:
  std::map<pid_t, ModelElement> all;
  std::string toolkit = "gtk";           ///< of all applications
  std::vector<std::string> pressed;      ///< names, in the order of the presses
  std::size_t rounds = 0;                ///< calls that asked about some elements
  std::size_t asked = 0;                 ///< elements and places in tables that they asked about
  std::function<void()> onCall = [] {};  ///< may throw as a bus does
  std::function<void()> onPress = [] {}; ///< the same, of presses

  std::vector<platform::AccessibleApplication> applications(const platform::CallLimits&) override {
    onCall();
    std::vector<platform::AccessibleApplication> applications;
    for (const auto& [process, root] : all)
      applications.push_back({rootOf(process), process});
    return applications;
  }

  std::optional<platform::AccessibleElement> findApplication(pid_t process, const platform::CallLimits&) override {
    onCall();
    return all.contains(process) ? std::optional(rootOf(process)) : std::nullopt;
  }

  std::vector<platform::AccessibleFacts> read(std::span<const platform::AccessibleElement> elements,
                                              const platform::AccessibleParts& parts,
                                              const platform::CallLimits&) override {
    if (!elements.empty()) {
      onCall();
      ++rounds;
      asked += elements.size();
    }
    std::vector<platform::AccessibleFacts> facts;
    for (const platform::AccessibleElement& element : elements)
      facts.push_back(factsOf(element, parts));
    return facts;
  }

  std::vector<std::optional<platform::AccessibleElement>> cells(std::span<const platform::AccessiblePlace> places,
                                                                const platform::CallLimits&) override {
    std::vector<std::optional<platform::AccessibleElement>> cells;
    for (const platform::AccessiblePlace& place : places)
      cells.push_back(cellAt(place));
    asked += places.size();
    return cells;
  }

  std::vector<bool> selectedRows(const platform::AccessibleElement& table, int first, int count,
                                 const platform::CallLimits&) override {
    std::vector<bool> selected;
    for (int row = first; row < first + count; ++row)
      selected.push_back(isSelected(*find(*cellAt({table, row, 0}))));
    asked += selected.size();
    return selected;
  }

  void select(const platform::AccessibleElement& element, platform::AccessibleSelection selection,
              const platform::CallLimits&) override {
    ModelElement* container = find(parentOf(element));
    if (!container->isSelectable)
      throw platform::failure(platform::DesktopFault::elementRefused, "nothing is selected here");
    if (selection == platform::AccessibleSelection::only) {
      for (ModelElement& each : container->children)
        std::erase(each.states, platform::AccessibleState::selected);
    }
    std::vector<platform::AccessibleState>& states = find(element)->states;
    std::erase(states, platform::AccessibleState::selected);
    if (selection != platform::AccessibleSelection::removed)
      states.push_back(platform::AccessibleState::selected);
  }

  void selectRow(const platform::AccessibleElement& table, int row, platform::AccessibleSelection selection,
                 const platform::CallLimits& limits) override {
    select(*cellAt({table, row, 0}), selection, limits);
  }

  void perform(const platform::AccessibleElement& element, std::size_t, const platform::CallLimits&) override {
    onPress();
    ModelElement* found = find(element);
    if (!found)
      throw platform::failure(platform::DesktopFault::elementGone);
    pressed.push_back(found->name.value_or(""));
    const auto react = found->onPress; // which may change the tree
    react();
  }

  void setText(const platform::AccessibleElement& element, const std::string& text,
               const platform::CallLimits&) override {
    find(element)->text = text;
  }
  void setValue(const platform::AccessibleElement& element, double value, const platform::CallLimits&) override {
    find(element)->text = fmt::format("{}", value);
  }
  void focus(const platform::AccessibleElement& element, const platform::CallLimits&) override {
    find(element)->states.push_back(platform::AccessibleState::focused);
  }

private:
  static platform::AccessibleElement rootOf(pid_t process) { return {std::to_string(process), ""}; }

  static platform::AccessibleElement parentOf(const platform::AccessibleElement& element) {
    return {element.application, element.path.substr(0, element.path.rfind('/'))};
  }

  static bool isSelected(const ModelElement& element) {
    return std::ranges::find(element.states, platform::AccessibleState::selected) != element.states.end();
  }

  static bool hasRows(const ModelElement& table) {
    return table.children.front().role == platform::AccessibleRole::tableRow;
  }

  std::optional<platform::AccessibleElement> cellAt(const platform::AccessiblePlace& place) {
    if (hasRows(*find(place.table)))
      return platform::AccessibleElement{place.table.application,
                                         fmt::format("{}/{}/{}", place.table.path, place.row, place.column)};
    const std::size_t position =
        static_cast<std::size_t>(place.row + 1) * find(place.table)->columns + static_cast<std::size_t>(place.column);
    if (position >= find(place.table)->children.size())
      return std::nullopt;
    return platform::AccessibleElement{place.table.application, fmt::format("{}/{}", place.table.path, position)};
  }

  ModelElement* find(const platform::AccessibleElement& element) {
    const auto application = all.find(std::stoi(element.application));
    ModelElement* found = application != all.end() ? &application->second : nullptr;
    for (std::size_t from = 1; found && from < element.path.size(); from = element.path.find('/', from) + 1) {
      const auto position = static_cast<std::size_t>(std::stoi(element.path.substr(from)));
      found = position < found->children.size() ? &found->children[position] : nullptr;
      if (element.path.find('/', from) == std::string::npos)
        break;
    }
    return found;
  }

  platform::AccessibleFacts factsOf(const platform::AccessibleElement& element,
                                    const platform::AccessibleParts& parts) {
    platform::AccessibleFacts facts;
    const ModelElement* found = find(element);
    if (!found || !found->name)
      return facts;
    if (parts.name)
      facts.name = found->name;
    if (parts.role)
      facts.role = found->role;
    if (parts.states) {
      std::uint64_t bits = 0;
      for (const platform::AccessibleState state : found->states)
        bits |= std::uint64_t{1} << static_cast<unsigned>(state);
      facts.states = platform::AccessibleStates(bits);
    }
    if (parts.text && !found->text.empty())
      facts.text = found->text;
    if (parts.value && !found->text.empty())
      facts.value = std::stod(found->text);
    if (parts.actions)
      facts.actions = found->actions;
    if (parts.parent)
      facts.parent = parentOf(element);
    if (parts.minimum && found->range)
      facts.minimum = found->range->first;
    if (parts.maximum && found->range)
      facts.maximum = found->range->second;
    if (parts.columns && found->columns > 0)
      facts.columns = static_cast<int>(found->columns);
    if (parts.rows && found->columns > 0)
      facts.rows =
          static_cast<int>(hasRows(*found) ? found->children.size() : found->children.size() / found->columns - 1);
    if (parts.image && found->isImage)
      facts.image = "";
    if (parts.extents)
      facts.extents = found->extents;
    if (parts.toolkit)
      facts.toolkit = toolkit;
    if (parts.children) {
      facts.children.emplace();
      for (std::size_t each = 0; each < found->children.size(); ++each)
        facts.children->push_back({element.application, fmt::format("{}/{}", element.path, each)});
    }
    return facts;
  }
};

} // namespace tabwright::testsupport
