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

/// The position of a kind; doesn't compile for words that none has.
consteval std::size_t kind(std::string_view words) {
  for (std::size_t each = 0; each < uiElementKinds.size(); ++each) {
    if (uiElementKinds[each].words == words)
      return each;
  }
  throw "no such kind of elements";
}

struct RoleRow {
  AccessibleRole accessible;
  UIElementRole role;
};

constexpr UIElementRole unknown{kind("UI element"), "AXUnknown"};
constexpr UIElementRole textArea{kind("text area"), "AXTextArea", "", ValueForm::text};
constexpr UIElementRole menuButton{kind("menu button"), "AXMenuButton"};
constexpr UIElementRole group{kind("group"), "AXGroup"};

// Roles without a row are of the wider class, with the role AXUnknown.
constexpr RoleRow roleRows[]{
    {AccessibleRole::alert, group},
    {AccessibleRole::checkBox, {kind("checkbox"), "AXCheckBox", "", ValueForm::checked}},
    {AccessibleRole::toggleButton, {kind("checkbox"), "AXCheckBox", "AXToggle", ValueForm::checked}},
    {AccessibleRole::colorChooser, {kind("color well"), "AXColorWell"}},
    {AccessibleRole::columnHeader, {kind("button"), "AXButton", "AXSortButton"}},
    {AccessibleRole::tableColumnHeader, {kind("button"), "AXButton", "AXSortButton"}},
    {AccessibleRole::comboBox, {kind("pop up button"), "AXPopUpButton", "", ValueForm::text}},
    {AccessibleRole::dialog, group},
    {AccessibleRole::documentFrame, {kind("UI element"), "AXWebArea"}},
    {AccessibleRole::documentWeb, {kind("UI element"), "AXWebArea"}},
    {AccessibleRole::documentText, textArea},
    {AccessibleRole::entry, {kind("text field"), "AXTextField", "", ValueForm::text}},
    {AccessibleRole::filler, group},
    {AccessibleRole::form, group},
    {AccessibleRole::frame, group},
    {AccessibleRole::grouping, group},
    {AccessibleRole::heading, {kind("UI element"), "AXHeading", "", ValueForm::text}},
    {AccessibleRole::icon, {kind("image"), "AXImage"}},
    {AccessibleRole::image, {kind("image"), "AXImage"}},
    {AccessibleRole::infoBar, group},
    {AccessibleRole::label, {kind("static text"), "AXStaticText", "", ValueForm::text}},
    {AccessibleRole::levelBar, {kind("value indicator"), "AXLevelIndicator", "", ValueForm::number}},
    {AccessibleRole::link, {kind("UI element"), "AXLink", "", ValueForm::text}},
    {AccessibleRole::list, {kind("list"), "AXList"}},
    {AccessibleRole::listBox, {kind("list"), "AXList"}},
    {AccessibleRole::listItem, {kind("row"), "AXRow"}},
    {AccessibleRole::menu, {kind("menu"), "AXMenu"}},
    {AccessibleRole::popupMenu, {kind("menu"), "AXMenu"}},
    {AccessibleRole::menuItem, {kind("menu item"), "AXMenuItem"}},
    {AccessibleRole::checkMenuItem, {kind("menu item"), "AXMenuItem", "", ValueForm::checked}},
    {AccessibleRole::radioMenuItem, {kind("menu item"), "AXMenuItem", "", ValueForm::checked}},
    {AccessibleRole::tearoffMenuItem, {kind("menu item"), "AXMenuItem"}},
    {AccessibleRole::notification, group},
    {AccessibleRole::pageTab, {kind("radio button"), "AXRadioButton", "AXTabButton", ValueForm::checked}},
    {AccessibleRole::pageTabList, {kind("tab group"), "AXTabGroup"}},
    {AccessibleRole::panel, group},
    {AccessibleRole::paragraph, {kind("static text"), "AXStaticText", "", ValueForm::text}},
    {AccessibleRole::passwordText, {kind("text field"), "AXTextField", "AXSecureTextField", ValueForm::text}},
    {AccessibleRole::progressBar, {kind("progress indicator"), "AXProgressIndicator", "", ValueForm::number}},
    {AccessibleRole::pushButton, {kind("button"), "AXButton"}},
    {AccessibleRole::radioButton, {kind("radio button"), "AXRadioButton", "", ValueForm::checked}},
    {AccessibleRole::scrollBar, {kind("scroll bar"), "AXScrollBar", "", ValueForm::number}},
    {AccessibleRole::scrollPane, {kind("scroll area"), "AXScrollArea"}},
    {AccessibleRole::section, group},
    {AccessibleRole::separator, {kind("splitter"), "AXSplitter"}},
    {AccessibleRole::slider, {kind("slider"), "AXSlider", "", ValueForm::number}},
    {AccessibleRole::spinButton, {kind("incrementor"), "AXIncrementor", "", ValueForm::number}},
    {AccessibleRole::splitPane, {kind("splitter group"), "AXSplitGroup"}},
    {AccessibleRole::staticText, {kind("static text"), "AXStaticText", "", ValueForm::text}},
    {AccessibleRole::statusBar, group},
    {AccessibleRole::table, {kind("table"), "AXTable"}},
    {AccessibleRole::tableCell, {kind("UI element"), "AXCell", "", ValueForm::text}},
    {AccessibleRole::tableRow, {kind("row"), "AXRow"}},
    {AccessibleRole::terminal, textArea},
    {AccessibleRole::text, {kind("text field"), "AXTextField", "", ValueForm::text}},
    {AccessibleRole::toolBar, {kind("toolbar"), "AXToolbar"}},
    {AccessibleRole::tree, {kind("outline"), "AXOutline"}},
    {AccessibleRole::treeTable, {kind("outline"), "AXOutline"}},
    {AccessibleRole::window, group},
    {AccessibleRole::treeItem, {kind("row"), "AXRow", "AXOutlineRow"}},
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
  for (std::size_t each = 0; each < names.size(); ++each) {
    const std::string name = platform::lowercased(names[each]);
    const auto row = std::ranges::find(actionRows, name, &ActionRow::name);
    // Names that the Mac has nothing like are told as they are.
    std::string told = row != std::ranges::end(actionRows) ? std::string(row->action) : names[each];
    if (name.empty()) // Chromium's elements have one without a name
      told = "AXPress";
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
