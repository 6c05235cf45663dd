#include "scripting/chromium/ChromiumTerminology.h"

namespace tabwright::scripting {

using applescript::ParameterTerm;
using applescript::Term;
using Kind = applescript::Term::Kind;
namespace events = applescript::events;
namespace keywords = applescript::keywords;

namespace {

constexpr ParameterTerm executeParameters[]{{"javascript", chromium::javascript}};
constexpr ParameterTerm makeParameters[]{{"new", keywords::elementClass},
                                         {"at", keywords::insertionLocation},
                                         {"in", keywords::insertionLocation},
                                         {"with data", keywords::data},
                                         {"with properties", keywords::withProperties}};

// Words that share a code are synonyms; messages take the first. `document` is there for `make new document`, which
// makes a window: no object has documents.
constexpr Term chromiumTerms[]{
    {Kind::className, "application", applescript::fourCharCode("capp"), "applications"},
    {Kind::className, "window", applescript::fourCharCode("cwin"), "windows"},
    {Kind::className, "document", applescript::fourCharCode("docu"), "documents"},
    {Kind::className, "tab", chromium::tab, "tabs"},

    {Kind::property, "active tab", chromium::activeTab},
    {Kind::property, "active tab index", chromium::activeTabIndex},
    {Kind::property, "bounds", applescript::fourCharCode("pbnd")},
    {Kind::property, "closeable", applescript::fourCharCode("hclb")},
    {Kind::property, "frontmost", applescript::fourCharCode("pisf")},
    {Kind::property, "given name", chromium::givenName},
    {Kind::property, "id", applescript::fourCharCode("ID  ")},
    {Kind::property, "index", applescript::fourCharCode("pidx")},
    {Kind::property, "loading", chromium::loading},
    {Kind::property, "minimizable", applescript::fourCharCode("ismn")},
    {Kind::property, "miniaturizable", applescript::fourCharCode("ismn")},
    {Kind::property, "minimized", applescript::fourCharCode("pmnd")},
    {Kind::property, "miniaturized", applescript::fourCharCode("pmnd")},
    {Kind::property, "mode", chromium::mode},
    {Kind::property, "name", applescript::fourCharCode("pnam")},
    {Kind::property, "title", applescript::fourCharCode("pnam")},
    {Kind::property, "resizable", applescript::fourCharCode("prsz")},
    {Kind::property, "URL", chromium::url},
    {Kind::property, "version", applescript::fourCharCode("vers")},
    {Kind::property, "visible", applescript::fourCharCode("pvis")},
    {Kind::property, "zoomable", applescript::fourCharCode("iszm")},
    {Kind::property, "zoomed", applescript::fourCharCode("pzum")},

    Term::command("execute", chromium::execute, executeParameters),
    Term::command("go back", chromium::goBack),
    Term::command("go forward", chromium::goForward),
    {Kind::command, "make", 0, {}, events::make, makeParameters, Term::DirectParameter::none},
    Term::command("open location", openLocation),
    Term::command("reload", chromium::reload),
    Term::command("stop", chromium::stop),
};

} // namespace

const applescript::Terminology& chromiumTerminology() {
  static const applescript::Terminology terminology("Chromium", chromiumTerms);
  return terminology;
}

} // namespace tabwright::scripting
