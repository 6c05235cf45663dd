#include "scripting/systemevents/SystemEventsTerminology.h"

namespace tabwright::scripting {

using applescript::ParameterTerm;
using applescript::Term;
using Kind = applescript::Term::Kind;

namespace {

constexpr ParameterTerm keyParameters[]{{"using", systemevents::usingModifiers}};

constexpr Term command(std::string_view words, applescript::EventCode event,
                       std::span<const ParameterTerm> parameters = {}) {
  return {Kind::command, words, 0, {}, event, parameters};
}

constexpr Term rows[]{
    {Kind::className, "application process", systemevents::applicationProcess, "application processes"},
    {Kind::className, "menu", systemevents::menu, "menus"},
    {Kind::className, "menu bar", systemevents::menuBar, "menu bars"},
    {Kind::className, "menu bar item", systemevents::menuBarItem, "menu bar items"},
    {Kind::className, "menu item", systemevents::menuItem, "menu items"},
    {Kind::className, "process", systemevents::process, "processes"},
    {Kind::className, "window", applescript::fourCharCode("cwin"), "windows"},

    {Kind::property, "background only", systemevents::backgroundOnly},
    {Kind::property, "bundle identifier", systemevents::bundleIdentifier},
    {Kind::property, "enabled", systemevents::enabled},
    {Kind::property, "frontmost", applescript::fourCharCode("pisf")},
    {Kind::property, "id", applescript::fourCharCode("ID  ")},
    {Kind::property, "index", applescript::fourCharCode("pidx")},
    {Kind::property, "name", applescript::fourCharCode("pnam")},
    {Kind::property, "title", applescript::fourCharCode("pnam")},
    {Kind::property, "displayed name", applescript::fourCharCode("pnam")},
    {Kind::property, "unix id", systemevents::unixID},
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

    command("click", systemevents::click),
    command("key code", systemevents::keyCode, keyParameters),
    command("key down", systemevents::keyDown),
    command("key up", systemevents::keyUp),
    command("keystroke", systemevents::keystroke, keyParameters),
};

} // namespace

const applescript::Terminology& systemEventsTerminology() {
  static const applescript::Terminology terminology("System Events", rows);
  return terminology;
}

} // namespace tabwright::scripting
