#pragma once

#include "applescript/terminology/FourCharCode.h"
#include "platform/AccessibleElement.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::scripting {

/// A class of elements in windows, as the dictionary names it: its code, and its words in the singular and plural.
struct UIElementKind {
  applescript::FourCharCode code = 0;
  std::string_view words;
  std::string_view plural;
};

/// All of them. The first is the wider class that each element is of; what has no class of its own has that one.
inline constexpr std::array uiElementKinds{
    UIElementKind{applescript::fourCharCode("uiel"), "UI element", "UI elements"},
    UIElementKind{applescript::fourCharCode("butT"), "button", "buttons"},
    UIElementKind{applescript::fourCharCode("chbx"), "checkbox", "checkboxes"},
    UIElementKind{applescript::fourCharCode("colW"), "color well", "color wells"},
    UIElementKind{applescript::fourCharCode("ccol"), "column", "columns"},
    UIElementKind{applescript::fourCharCode("comB"), "combo box", "combo boxes"},
    UIElementKind{applescript::fourCharCode("sgrp"), "group", "groups"},
    UIElementKind{applescript::fourCharCode("imaA"), "image", "images"},
    UIElementKind{applescript::fourCharCode("incr"), "incrementor", "incrementors"},
    UIElementKind{applescript::fourCharCode("list"), "list", "lists"},
    UIElementKind{applescript::fourCharCode("menE"), "menu", "menus"},
    UIElementKind{applescript::fourCharCode("menB"), "menu button", "menu buttons"},
    UIElementKind{applescript::fourCharCode("menI"), "menu item", "menu items"},
    UIElementKind{applescript::fourCharCode("outl"), "outline", "outlines"},
    UIElementKind{applescript::fourCharCode("popB"), "pop up button", "pop up buttons"},
    UIElementKind{applescript::fourCharCode("proI"), "progress indicator", "progress indicators"},
    UIElementKind{applescript::fourCharCode("radB"), "radio button", "radio buttons"},
    UIElementKind{applescript::fourCharCode("crow"), "row", "rows"},
    UIElementKind{applescript::fourCharCode("scra"), "scroll area", "scroll areas"},
    UIElementKind{applescript::fourCharCode("scrb"), "scroll bar", "scroll bars"},
    UIElementKind{applescript::fourCharCode("sliI"), "slider", "sliders"},
    UIElementKind{applescript::fourCharCode("splg"), "splitter group", "splitter groups"},
    UIElementKind{applescript::fourCharCode("splr"), "splitter", "splitters"},
    UIElementKind{applescript::fourCharCode("sttx"), "static text", "static texts"},
    UIElementKind{applescript::fourCharCode("tab "), "tab group", "tab groups"},
    UIElementKind{applescript::fourCharCode("tabB"), "table", "tables"},
    UIElementKind{applescript::fourCharCode("txta"), "text area", "text areas"},
    UIElementKind{applescript::fourCharCode("txtf"), "text field", "text fields"},
    UIElementKind{applescript::fourCharCode("tbar"), "toolbar", "toolbars"},
    UIElementKind{applescript::fourCharCode("vali"), "value indicator", "value indicators"},
};

/// The part that an element plays, in the words of the Mac's accessibility interface.
struct UIElementRole {
  std::size_t kind = 0;          ///< position in `uiElementKinds`
  std::string_view role;         ///< such as "AXButton"
  std::string_view subrole = {}; ///< such as "AXSecureTextField"; empty for most
  /// The form in which `value` is read and set: `checked` as 1 or 0, `number` as a real, `text` as a text; `none` for
  /// elements without a value.
  enum class ValueForm { none, checked, text, number } value = ValueForm::none;
};

/// The role of an element by what an application tells of it (role and states). The reference is good for ever;
/// "AXUnknown" for roles that the Mac has nothing like.
[[nodiscard]] const UIElementRole& uiElementRole(const platform::AccessibleFacts& facts);

/// True for containers without a name, and the like, that only lay out what they hold. Toolkits nest them in numbers;
/// scripts, which name the way to an element, are spared them. Takes name and role.
[[nodiscard]] bool isLayoutOnly(const platform::AccessibleFacts& facts);

/// True for what isn't there for the user: hidden, or the menu bar, which is the process's. Takes role and states, and
/// an element without a role for one that is gone.
[[nodiscard]] bool isLeftOut(const platform::AccessibleFacts& facts);

/// An action of an element's by the Mac's name, such as "AXPress", and its position among the application's own. Those
/// that the Mac has no name for keep theirs.
struct UIElementAction {
  std::string name;
  std::size_t position = 0;
};

/// `names` are the application's, in its order. No name comes twice: the first counts.
[[nodiscard]] std::vector<UIElementAction> uiElementActions(const UIElementRole& role,
                                                            std::span<const std::string> names);

} // namespace tabwright::scripting
