// Tables and selections over AT-SPI (org.a11y.atspi.Table, org.a11y.atspi.Selection). Qt 6.4 has no selections but
// those of tables, which its lists are too, and in its trees it takes another row out of the selection than it is told
// to: none is taken out there.
#include "platform/DesktopFault.h"
#include "platform/linux/AtspiAccessibility.h"
#include "platform/linux/ElementQuestions.h"

#include <algorithm>
#include <cstdint>
#include <systemd/sd-bus.h>

namespace tabwright::platform {

namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* tableInterface = "org.a11y.atspi.Table";
constexpr const char* selectionInterface = "org.a11y.atspi.Selection";

bool isAnswer(sd_bus_message* message) {
  return sd_bus_message_is_method_error(message, nullptr) <= 0;
}

[[noreturn]] void refuseSelection() {
  throw failure(DesktopFault::elementRefused, "its selection can’t be changed from outside");
}

} // namespace

std::vector<std::optional<AccessibleElement>> AtspiAccessibility::cells(std::span<const AccessiblePlace> places,
                                                                        const CallLimits& limits) {
  std::vector<std::optional<AccessibleElement>> cells(places.size());
  if (places.empty())
    return cells;
  const std::string& application = places.front().table.application;
  const bool isOne =
      std::ranges::all_of(places, [&](const AccessiblePlace& place) { return place.table.application == application; });
  const Work work = [&](BusConnection& bus) {
    return askAll(
        bus, places.size(),
        [&](std::size_t each) {
          const AccessiblePlace& place = places[each];
          const bool isHeader = place.row == AccessiblePlace::header;
          bus.ask(
              {place.table.application.c_str(), place.table.path.c_str(), tableInterface,
               isHeader ? "GetColumnHeader" : "GetAccessibleAt"},
              [&](sd_bus_message* call) {
                if (!isHeader)
                  sd_bus_message_append(call, "i", std::int32_t{place.row});
                sd_bus_message_append(call, "i", std::int32_t{place.column});
              },
              [&cell = cells[each]](sd_bus_message* answer) {
                if (isAnswer(answer))
                  cell = readElement(answer);
              });
        },
        limits);
  };
  if (isOne)
    onRoadTo(application, limits, work);
  else
    onBus(limits, work);
  return cells;
}

std::vector<bool> AtspiAccessibility::selectedRows(const AccessibleElement& table, int first, int count,
                                                   const CallLimits& limits) {
  std::vector<bool> selected(static_cast<std::size_t>(std::max(count, 0)));
  onRoadTo(table.application, limits, [&](BusConnection& bus) {
    return askAll(
        bus, selected.size(),
        [&](std::size_t each) {
          bus.ask(
              {table.application.c_str(), table.path.c_str(), tableInterface, "IsRowSelected"},
              [&](sd_bus_message* call) { sd_bus_message_append(call, "i", first + static_cast<std::int32_t>(each)); },
              [&selected, each](sd_bus_message* answer) {
                int isSelected = 0;
                if (isAnswer(answer) && sd_bus_message_read(answer, "b", &isSelected) > 0)
                  selected[each] = isSelected != 0;
              });
        },
        limits);
  });
  return selected;
}

void AtspiAccessibility::ask(const AccessibleElement& element, const char* interface, const char* member,
                             std::optional<int> argument, const BusConnection::Take& take, const CallLimits& limits) {
  onRoadTo(element.application, limits, [&](BusConnection& bus) {
    bus.ask(
        {element.application.c_str(), element.path.c_str(), interface, member},
        [&](sd_bus_message* call) {
          if (argument)
            sd_bus_message_append(call, "i", std::int32_t{*argument});
        },
        take);
    return bus.collect(limits, longestSilence);
  });
}

std::optional<bool> AtspiAccessibility::done(const AccessibleElement& element, const char* interface,
                                             const char* member, std::optional<int> argument,
                                             const CallLimits& limits) {
  std::optional<bool> isDone;
  const auto take = [&](sd_bus_message* answer) {
    int told = 0;
    if (isAnswer(answer) && sd_bus_message_read(answer, "b", &told) > 0)
      isDone = told != 0;
  };
  ask(element, interface, member, argument, take, limits);
  return isDone;
}

void AtspiAccessibility::clearSelection(const AccessibleElement& table, const CallLimits& limits) {
  if (done(table, selectionInterface, "ClearSelection", {}, limits))
    return;
  if (isTree(table, limits))
    return;
  for (const int row : selectedRowsOf(table, limits))
    (void)done(table, tableInterface, "RemoveRowSelection", row, limits);
}

bool AtspiAccessibility::isTree(const AccessibleElement& table, const CallLimits& limits) {
  return read({&table, 1}, {.role = true}, limits).front().role == AccessibleRole::tree;
}

std::vector<int> AtspiAccessibility::selectedRowsOf(const AccessibleElement& table, const CallLimits& limits) {
  std::vector<int> rows;
  const auto take = [&](sd_bus_message* answer) {
    const void* told = nullptr;
    std::size_t bytes = 0;
    if (!isAnswer(answer) || sd_bus_message_read_array(answer, 'i', &told, &bytes) < 0)
      return;
    const auto* first = static_cast<const std::int32_t*>(told);
    rows.assign(first, first + bytes / sizeof(std::int32_t));
  };
  ask(table, tableInterface, "GetSelectedRows", {}, take, limits);
  return rows;
}

void AtspiAccessibility::selectRow(const AccessibleElement& table, int row, AccessibleSelection selection,
                                   const CallLimits& limits) {
  if (selection == AccessibleSelection::only)
    clearSelection(table, limits);
  const bool isWanted = selection != AccessibleSelection::removed;
  if (!isWanted && isTree(table, limits))
    refuseSelection();
  (void)done(table, tableInterface, isWanted ? "AddRowSelection" : "RemoveRowSelection", row, limits);
  if (selectedRows(table, row, 1, limits).front() != isWanted)
    refuseSelection();
  if (selection == AccessibleSelection::only && selectedRowsOf(table, limits).size() > 1)
    throw failure(DesktopFault::elementRefused, "other rows stay selected beside this one");
}

int AtspiAccessibility::number(const AccessibleElement& element, const char* interface, const char* member,
                               std::optional<int> argument, const CallLimits& limits) {
  std::int32_t number = -1;
  const auto take = [&](sd_bus_message* answer) {
    if (isAnswer(answer))
      sd_bus_message_read(answer, "i", &number);
  };
  ask(element, interface, member, argument, take, limits);
  return number;
}

// GTK's list boxes take one out of the selection that stands elsewhere in it than they think. So all go, and the others
// come back.
void AtspiAccessibility::deselect(const AccessibleElement& container, int position, const CallLimits& limits) {
  std::vector<int> others;
  while (true) {
    std::optional<AccessibleElement> selected;
    const auto take = [&](sd_bus_message* answer) {
      if (isAnswer(answer))
        selected = readElement(answer);
    };
    ask(container, selectionInterface, "GetSelectedChild", static_cast<int>(others.size()), take, limits);
    if (!selected)
      break;
    others.push_back(number(*selected, accessibleInterface, "GetIndexInParent", {}, limits));
  }
  std::erase(others, position);
  (void)done(container, selectionInterface, "ClearSelection", {}, limits);
  for (const int other : others)
    (void)done(container, selectionInterface, "SelectChild", other, limits);
  if (done(container, selectionInterface, "IsChildSelected", position, limits).value_or(false))
    refuseSelection();
}

void AtspiAccessibility::select(const AccessibleElement& element, AccessibleSelection selection,
                                const CallLimits& limits) {
  const std::optional<AccessibleElement> parent = read({&element, 1}, {.parent = true}, limits).front().parent;
  const int position = number(element, accessibleInterface, "GetIndexInParent", {}, limits);
  if (!parent || position < 0)
    throw failure(DesktopFault::elementGone);
  const std::optional<bool> isSelected = done(*parent, selectionInterface, "IsChildSelected", position, limits);
  if (!isSelected) {
    const int row = number(*parent, tableInterface, "GetRowAtIndex", position, limits);
    if (row < 0)
      refuseSelection();
    return selectRow(*parent, row, selection, limits);
  }
  if (selection == AccessibleSelection::removed) {
    if (*isSelected)
      deselect(*parent, position, limits);
    return;
  }
  if (selection == AccessibleSelection::only)
    (void)done(*parent, selectionInterface, "ClearSelection", {}, limits);
  if (!done(*parent, selectionInterface, "SelectChild", position, limits).value_or(false))
    refuseSelection();
}

} // namespace tabwright::platform
