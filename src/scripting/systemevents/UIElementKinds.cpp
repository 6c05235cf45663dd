// Applications tell their elements by AT-SPI's roles, states and words for actions; tables give each its counterpart in
// the Mac's accessibility interface. A role alone says which it is, but for texts of several lines and buttons that
// open a menu, which a state tells apart.
#include "scripting/systemevents/UIElementKinds.h"

#include "platform/AsciiCase.h"

#include <algorithm>

namespace tabwright::scripting {

using platform::AccessibleFacts;
using platform::AccessibleRole;
using platform::AccessibleState;
using ValueForm = UIElementRole::ValueForm;

namespace {

struct RoleRow {
  AccessibleRole accessible;
  UIElementRole role;
};

constexpr UIElementRole unknown{uiElementKind("UI element"), "AXUnknown"};
constexpr UIElementRole textArea{uiElementKind("text area"), "AXTextArea", "", ValueForm::text};
constexpr UIElementRole menuButton{uiElementKind("menu button"), "AXMenuButton"};
constexpr UIElementRole textCell{uiElementKind("text field"), "AXTextField", "", ValueForm::text};
constexpr UIElementRole picture{uiElementKind("image"), "AXImage"};
constexpr UIElementRole checkCell{uiElementKind("checkbox"), "AXCheckBox", "", ValueForm::checked};
constexpr UIElementRole tableRow{uiElementKind("row"), "AXRow", "AXTableRow"};
constexpr UIElementRole outlineRow{uiElementKind("row"), "AXRow", "AXOutlineRow"};
constexpr UIElementRole column{uiElementKind("column"), "AXColumn"};
constexpr UIElementRole group{uiElementKind("group"), "AXGroup"};

// Roles without a row are of the wider class, with the role AXUnknown.
constexpr RoleRow roleRows[]{
    {AccessibleRole::alert, group},
    {AccessibleRole::checkBox, {uiElementKind("checkbox"), "AXCheckBox", "", ValueForm::checked}},
    {AccessibleRole::toggleButton, {uiElementKind("checkbox"), "AXCheckBox", "AXToggle", ValueForm::checked}},
    {AccessibleRole::colorChooser, {uiElementKind("color well"), "AXColorWell"}},
    {AccessibleRole::columnHeader, {uiElementKind("button"), "AXButton", "AXSortButton"}},
    {AccessibleRole::tableColumnHeader, {uiElementKind("button"), "AXButton", "AXSortButton"}},
    {AccessibleRole::comboBox, {uiElementKind("pop up button"), "AXPopUpButton", "", ValueForm::text}},
    {AccessibleRole::dialog, group},
    {AccessibleRole::documentFrame, {uiElementKind("UI element"), "AXWebArea"}},
    {AccessibleRole::documentWeb, {uiElementKind("UI element"), "AXWebArea"}},
    {AccessibleRole::documentText, textArea},
    {AccessibleRole::entry, {uiElementKind("text field"), "AXTextField", "", ValueForm::text}},
    {AccessibleRole::filler, group},
    {AccessibleRole::form, group},
    {AccessibleRole::frame, group},
    {AccessibleRole::grouping, group},
    {AccessibleRole::heading, {uiElementKind("UI element"), "AXHeading", "", ValueForm::text}},
    {AccessibleRole::icon, picture},
    {AccessibleRole::image, picture},
    {AccessibleRole::infoBar, group},
    {AccessibleRole::label, {uiElementKind("static text"), "AXStaticText", "", ValueForm::text}},
    {AccessibleRole::levelBar, {uiElementKind("value indicator"), "AXLevelIndicator", "", ValueForm::number}},
    {AccessibleRole::link, {uiElementKind("UI element"), "AXLink", "", ValueForm::text}},
    {AccessibleRole::list, {uiElementKind("list"), "AXList"}},
    {AccessibleRole::listBox, {uiElementKind("list"), "AXList"}},
    {AccessibleRole::listItem, {uiElementKind("row"), "AXRow"}},
    {AccessibleRole::menu, {uiElementKind("menu"), "AXMenu"}},
    {AccessibleRole::popupMenu, {uiElementKind("menu"), "AXMenu"}},
    {AccessibleRole::menuItem, {uiElementKind("menu item"), "AXMenuItem"}},
    {AccessibleRole::checkMenuItem, {uiElementKind("menu item"), "AXMenuItem", "", ValueForm::checked}},
    {AccessibleRole::radioMenuItem, {uiElementKind("menu item"), "AXMenuItem", "", ValueForm::checked}},
    {AccessibleRole::tearoffMenuItem, {uiElementKind("menu item"), "AXMenuItem"}},
    {AccessibleRole::notification, group},
    {AccessibleRole::pageTab, {uiElementKind("radio button"), "AXRadioButton", "AXTabButton", ValueForm::checked}},
    {AccessibleRole::pageTabList, {uiElementKind("tab group"), "AXTabGroup"}},
    {AccessibleRole::panel, group},
    {AccessibleRole::paragraph, {uiElementKind("static text"), "AXStaticText", "", ValueForm::text}},
    {AccessibleRole::passwordText, {uiElementKind("text field"), "AXTextField", "AXSecureTextField", ValueForm::text}},
    {AccessibleRole::progressBar, {uiElementKind("progress indicator"), "AXProgressIndicator", "", ValueForm::number}},
    {AccessibleRole::pushButton, {uiElementKind("button"), "AXButton"}},
    {AccessibleRole::radioButton, {uiElementKind("radio button"), "AXRadioButton", "", ValueForm::checked}},
    {AccessibleRole::scrollBar, {uiElementKind("scroll bar"), "AXScrollBar", "", ValueForm::number}},
    {AccessibleRole::scrollPane, {uiElementKind("scroll area"), "AXScrollArea"}},
    {AccessibleRole::section, group},
    {AccessibleRole::separator, {uiElementKind("splitter"), "AXSplitter"}},
    {AccessibleRole::slider, {uiElementKind("slider"), "AXSlider", "", ValueForm::number}},
    {AccessibleRole::spinButton, {uiElementKind("incrementor"), "AXIncrementor", "", ValueForm::number}},
    {AccessibleRole::splitPane, {uiElementKind("splitter group"), "AXSplitGroup"}},
    {AccessibleRole::staticText, {uiElementKind("static text"), "AXStaticText", "", ValueForm::text}},
    {AccessibleRole::statusBar, group},
    {AccessibleRole::table, {uiElementKind("table"), "AXTable"}},
    {AccessibleRole::tableCell, {uiElementKind("UI element"), "AXCell", "", ValueForm::text}},
    {AccessibleRole::tableRow, {uiElementKind("row"), "AXRow"}},
    {AccessibleRole::terminal, textArea},
    {AccessibleRole::text, {uiElementKind("text field"), "AXTextField", "", ValueForm::text}},
    {AccessibleRole::toolBar, {uiElementKind("toolbar"), "AXToolbar"}},
    {AccessibleRole::tree, {uiElementKind("outline"), "AXOutline"}},
    {AccessibleRole::treeTable, {uiElementKind("outline"), "AXOutline"}},
    {AccessibleRole::window, group},
    {AccessibleRole::treeItem, {uiElementKind("row"), "AXRow", "AXOutlineRow"}},
};

constexpr AccessibleRole layoutRoles[]{
    AccessibleRole::filler,     AccessibleRole::glassPane, AccessibleRole::layeredPane,
    AccessibleRole::optionPane, AccessibleRole::panel,     AccessibleRole::rootPane,
    AccessibleRole::section,    AccessibleRole::viewport,  AccessibleRole::grouping};

constexpr AccessibleRole menuRoles[]{
    AccessibleRole::menu,          AccessibleRole::popupMenu,     AccessibleRole::menuItem,
    AccessibleRole::checkMenuItem, AccessibleRole::radioMenuItem, AccessibleRole::tearoffMenuItem,
};

bool isOneOf(std::span<const AccessibleRole> roles, const AccessibleFacts& facts) {
  return facts.role && std::ranges::find(roles, *facts.role) != roles.end();
}

bool isIn(const AccessibleFacts& facts, AccessibleState state) {
  return facts.states && facts.states->has(state);
}

struct ActionRow {
  std::string_view name; ///< in lower case
  std::string_view action;
};

// GTK, Qt, Gecko and Chromium each have their own words.
constexpr ActionRow actionRows[]{
    {"click", "AXPress"},         {"press", "AXPress"},
    {"toggle", "AXPress"},        {"activate", "AXPress"},
    {"jump", "AXPress"},          {"open", "AXPress"},
    {"check", "AXPress"},         {"uncheck", "AXPress"},
    {"select", "AXPress"},        {"switch", "AXPress"},
    {"dodefault", "AXPress"},     {"menu", "AXShowMenu"},
    {"showmenu", "AXShowMenu"},   {"showcontextmenu", "AXShowMenu"},
    {"increase", "AXIncrement"},  {"decrease", "AXDecrement"},
    {"increment", "AXIncrement"}, {"decrement", "AXDecrement"},
};

/// By the actions of a cell. Qt's cells can all be toggled, and can nothing else.
bool isTickOfGtk(std::span<const std::string> actions) {
  return actions.size() > 1 && platform::lowercased(actions.front()) == "toggle";
}

} // namespace

const UIElementRole& uiElementRole(const AccessibleFacts& facts) {
  const auto row = std::ranges::find_if(roleRows, [&](const RoleRow& each) { return facts.role == each.accessible; });
  if (row == std::ranges::end(roleRows))
    return unknown;
  if (facts.role == AccessibleRole::text && isIn(facts, AccessibleState::multiLine))
    return textArea;
  if (facts.role == AccessibleRole::pushButton && isIn(facts, AccessibleState::hasPopup))
    return menuButton;
  return row->role;
}

bool isTableRole(const UIElementRole* role) {
  return role && (role->kind == uiElementKind("table") || role->kind == uiElementKind("outline"));
}

const UIElementRole& uiElementRowRole(const UIElementRole& table) {
  return table.kind == uiElementKind("outline") ? outlineRow : tableRow;
}

const UIElementRole& uiElementColumnRole() {
  return column;
}

const UIElementRole& uiElementCellRole(const AccessibleFacts& facts) {
  constexpr AccessibleRole cells[]{AccessibleRole::tableCell, AccessibleRole::treeItem, AccessibleRole::listItem};
  if (!isOneOf(cells, facts))
    return uiElementRole(facts);
  if (facts.name && !facts.name->empty())
    return textCell;
  if (facts.image)
    return picture;
  const bool isTick = isTickOfGtk(facts.actions.value_or(std::vector<std::string>{}));
  return isTick || isIn(facts, AccessibleState::checkable) ? checkCell : textCell;
}

bool isLayoutOnly(const AccessibleFacts& facts) {
  if (facts.role == AccessibleRole::fileChooser) // within the dialog that has its buttons
    return true;
  return isOneOf(layoutRoles, facts) && (!facts.name || facts.name->empty());
}

bool isLeftOut(const AccessibleFacts& facts) {
  // An element that is gone tells no role.
  if (facts.role == AccessibleRole::menuBar || !facts.role)
    return true;
  // In a closed menu no item is visible.
  return !isIn(facts, AccessibleState::visible) && !isOneOf(menuRoles, facts);
}

std::vector<UIElementAction> uiElementActions(const UIElementRole& role, std::span<const std::string> names) {
  std::vector<UIElementAction> actions;
  // GTK's cells with a tick tell their actions a place further on than they are done, and can't be ticked by any.
  if (isTickOfGtk(names))
    return actions;
  for (std::size_t each = 0; each < names.size(); ++each) {
    const std::string name = platform::lowercased(names[each]);
    const auto row = std::ranges::find(actionRows, name, &ActionRow::name);
    // Names that the Mac has nothing like are told as they are.
    std::string told = row != std::ranges::end(actionRows) ? std::string(row->action) : names[each];
    if (name.empty()) // Chromium's elements have one without a name
      told = "AXPress";
    // Qt's rows and cells can all be toggled, which does nothing to most.
    if (name == "toggle" && (role.value == ValueForm::text || role.kind == uiElementKind("row")))
      told = names[each];
    // In a field `activate` is the Enter key.
    if (name == "activate" && role.value == ValueForm::text)
      told = "AXConfirm";
    // The first of its name counts: AT-SPI puts first what a click does.
    if (std::ranges::find(actions, told, &UIElementAction::name) == actions.end())
      actions.push_back({std::move(told), each});
  }
  return actions;
}

} // namespace tabwright::scripting
