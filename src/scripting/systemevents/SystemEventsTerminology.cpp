#include "scripting/systemevents/SystemEventsTerminology.h"

#include "scripting/systemevents/UIElementKinds.h"

#include <vector>

namespace tabwright::scripting {

using applescript::ParameterTerm;
using applescript::Term;
using Kind = applescript::Term::Kind;

namespace {

constexpr ParameterTerm clickParameters[]{{"at", systemevents::clickPlace}};
constexpr ParameterTerm keyParameters[]{{"using", systemevents::usingModifiers}};

constexpr Term systemEventsTerms[]{
    {Kind::className, "action", systemevents::action, "actions"},
    {Kind::className, "attribute", systemevents::attribute, "attributes"},
    {Kind::className, "application process", systemevents::applicationProcess, "application processes"},
    {Kind::className, "menu bar", systemevents::menuBar, "menu bars"},
    {Kind::className, "menu bar item", systemevents::menuBarItem, "menu bar items"},
    {Kind::className, "process", systemevents::process, "processes"},
    {Kind::className, "sheet", systemevents::sheet, "sheets"},
    {Kind::className, "window", applescript::fourCharCode("cwin"), "windows"},

    {Kind::property, "accessibility description", systemevents::accessibilityDescription},
    {Kind::property, "appearance preferences", systemevents::appearancePreferences},
    {Kind::property, "background only", systemevents::backgroundOnly},
    {Kind::property, "bundle identifier", systemevents::bundleIdentifier},
    {Kind::property, "dark mode", systemevents::darkMode},
    {Kind::property, "description", systemevents::description},
    {Kind::property, "enabled", systemevents::enabled},
    {Kind::property, "entire contents", systemevents::entireContents},
    {Kind::property, "focused", systemevents::focused},
    {Kind::property, "frontmost", applescript::fourCharCode("pisf")},
    {Kind::property, "id", applescript::fourCharCode("ID  ")},
    {Kind::property, "index", applescript::fourCharCode("pidx")},
    {Kind::property, "name", applescript::fourCharCode("pnam")},
    // An element has one text by which users know it: its name, title and displayed name.
    {Kind::property, "title", applescript::fourCharCode("pnam")},
    {Kind::property, "displayed name", applescript::fourCharCode("pnam")},
    {Kind::property, "position", systemevents::position},
    {Kind::property, "role", systemevents::role},
    {Kind::property, "role description", systemevents::roleDescription},
    {Kind::property, "selected", systemevents::selected},
    {Kind::property, "settable", systemevents::settable},
    {Kind::property, "size", systemevents::size},
    {Kind::property, "subrole", systemevents::subrole},
    {Kind::property, "UI elements enabled", systemevents::elementsEnabled},
    {Kind::property, "unix id", systemevents::unixID},
    {Kind::property, "value", systemevents::value},
    {Kind::property, "visible", applescript::fourCharCode("pvis")},

    // The modifiers that keystrokes are typed with, and the keys themselves.
    {Kind::enumerator, "command down", applescript::fourCharCode("Kcmd")},
    {Kind::enumerator, "control down", applescript::fourCharCode("Kctl")},
    {Kind::enumerator, "option down", applescript::fourCharCode("Kopt")},
    {Kind::enumerator, "shift down", applescript::fourCharCode("Ksft")},
    {Kind::enumerator, "command", applescript::fourCharCode("eCmd")},
    {Kind::enumerator, "control", applescript::fourCharCode("eCnt")},
    {Kind::enumerator, "option", applescript::fourCharCode("eOpt")},
    {Kind::enumerator, "shift", applescript::fourCharCode("eSft")},

    Term::command("cancel", systemevents::cancel),
    Term::command("click", systemevents::click, clickParameters),
    Term::command("confirm", systemevents::confirm),
    Term::command("decrement", systemevents::decrement),
    Term::command("increment", systemevents::increment),
    Term::command("perform", systemevents::perform),
    Term::command("pick", systemevents::pick),
    Term::command("key code", systemevents::keyCode, keyParameters),
    Term::command("key down", systemevents::keyDown),
    Term::command("key up", systemevents::keyUp),
    Term::command("keystroke", systemevents::keystroke, keyParameters),
};

/// With the kinds of elements, which have a table of their own.
std::vector<Term> allRows() {
  std::vector<Term> all(std::begin(systemEventsTerms), std::end(systemEventsTerms));
  for (const UIElementKind& kind : uiElementKinds)
    all.push_back({Kind::className, kind.words, kind.code, kind.plural});
  return all;
}

} // namespace

const applescript::Terminology& systemEventsTerminology() {
  static const std::vector<Term> all = allRows();
  static const applescript::Terminology terminology("System Events", all);
  return terminology;
}

} // namespace tabwright::scripting
