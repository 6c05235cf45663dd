#include "applescript/SyntaxDictionaries.h"

#include <array>

namespace tabwright::applescript::test {

namespace {

using enum Term::Kind;

constexpr auto executeParameters = std::to_array<ParameterTerm>({{"javascript", fourCharCode("JvSc")}});
constexpr auto doParameters = std::to_array<ParameterTerm>({{"in", fourCharCode("dcnm")}});
constexpr auto keystrokeParameters = std::to_array<ParameterTerm>({{"using", fourCharCode("faal")}});
constexpr auto clickParameters = std::to_array<ParameterTerm>({{"at", fourCharCode("insh")}});

constexpr auto chrome = std::to_array<Term>({
    {className, "window", fourCharCode("cwin"), "windows"},
    {className, "tab", fourCharCode("CrTb"), "tabs"},
    {property, "active tab", fourCharCode("acTa")},
    {property, "active tab index", fourCharCode("acTI")},
    {property, "given name", fourCharCode("GNam")},
    {property, "loading", fourCharCode("ldng")},
    {property, "mode", fourCharCode("mode")},
    {property, "title", fourCharCode("titl")},
    {property, "URL", fourCharCode("URL ")},
    {command, "execute", 0, {}, {fourCharCode("CrSu"), fourCharCode("ExJa")}, executeParameters},
    {command, "reload", 0, {}, {fourCharCode("CrSu"), fourCharCode("Rlod")}},
});

constexpr auto safari = std::to_array<Term>({
    {className, "document", fourCharCode("docu"), "documents"},
    {className, "tab", fourCharCode("bTab"), "tabs"},
    {property, "current tab", fourCharCode("cTab")},
    {property, "URL", fourCharCode("pURL")},
    {command, "do javascript", 0, {}, {fourCharCode("sfri"), fourCharCode("dojs")}, doParameters},
});

constexpr auto systemEvents = std::to_array<Term>({
    {className, "process", fourCharCode("prcs"), "processes"},
    {className, "application process", fourCharCode("pcap"), "application processes"},
    {className, "menu", fourCharCode("menE"), "menus"},
    {className, "menu bar", fourCharCode("mbar"), "menu bars"},
    {className, "menu bar item", fourCharCode("mbri"), "menu bar items"},
    {className, "menu item", fourCharCode("menI"), "menu items"},
    {className, "window", fourCharCode("cwin"), "windows"},
    {property, "bundle identifier", fourCharCode("bnid")},
    {property, "frontmost", fourCharCode("pisf")},
    {enumerator, "command", fourCharCode("eCmd")},
    {enumerator, "command down", fourCharCode("Kcmd")},
    {enumerator, "shift", fourCharCode("eSft")},
    {enumerator, "shift down", fourCharCode("Ksft")},
    {command, "click", 0, {}, {fourCharCode("prcs"), fourCharCode("clic")}, clickParameters},
    {command, "keystroke", 0, {}, {fourCharCode("prcs"), fourCharCode("kprs")}, keystrokeParameters},
    {command, "key code", 0, {}, {fourCharCode("prcs"), fourCharCode("kcod")}, keystrokeParameters},
    {command, "key up", 0, {}, {fourCharCode("prcs"), fourCharCode("keyU")}},
});

} // namespace

const Terminology* SyntaxDictionaries::terminologyByID(std::string_view bundleIdentifier) const {
  if (equalFolded(bundleIdentifier, "com.google.chrome"))
    return terminologyByName("Google Chrome");
  if (equalFolded(bundleIdentifier, "com.apple.safari"))
    return terminologyByName("Safari");
  if (equalFolded(bundleIdentifier, "com.apple.systemevents"))
    return terminologyByName("System Events");
  return nullptr;
}

const Terminology* SyntaxDictionaries::terminologyByName(std::string_view name) const {
  static const Terminology chromeTerminology("Google Chrome", chrome);
  static const Terminology safariTerminology("Safari", safari);
  static const Terminology systemEventsTerminology("System Events", systemEvents);
  if (name == "Google Chrome")
    return &chromeTerminology;
  if (name == "Safari")
    return &safariTerminology;
  return name == "System Events" ? &systemEventsTerminology : nullptr;
}

} // namespace tabwright::applescript::test
