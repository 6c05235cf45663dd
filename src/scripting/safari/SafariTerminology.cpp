#include "scripting/safari/SafariTerminology.h"

namespace tabwright::scripting {

using applescript::ParameterTerm;
using applescript::Term;
using Kind = applescript::Term::Kind;
namespace events = applescript::events;
namespace keywords = applescript::keywords;

namespace {

constexpr ParameterTerm javaScriptParameters[]{{"in", safari::target}};
constexpr ParameterTerm makeParameters[]{{"new", keywords::elementClass},
                                         {"at", keywords::insertionLocation},
                                         {"in", keywords::insertionLocation},
                                         {"with data", keywords::data},
                                         {"with properties", keywords::withProperties}};

constexpr Term safariTerms[]{
    {Kind::className, "application", applescript::fourCharCode("capp"), "applications"},
    {Kind::className, "document", applescript::fourCharCode("docu"), "documents"},
    {Kind::className, "tab", safari::tab, "tabs"},
    {Kind::className, "window", applescript::fourCharCode("cwin"), "windows"},

    {Kind::property, "bounds", applescript::fourCharCode("pbnd")},
    {Kind::property, "closeable", applescript::fourCharCode("hclb")},
    {Kind::property, "current tab", safari::currentTab},
    {Kind::property, "document", applescript::fourCharCode("docu")},
    {Kind::property, "frontmost", applescript::fourCharCode("pisf")},
    {Kind::property, "id", applescript::fourCharCode("ID  ")},
    {Kind::property, "index", applescript::fourCharCode("pidx")},
    {Kind::property, "miniaturizable", applescript::fourCharCode("ismn")},
    {Kind::property, "miniaturized", applescript::fourCharCode("pmnd")},
    {Kind::property, "name", applescript::fourCharCode("pnam")},
    {Kind::property, "resizable", applescript::fourCharCode("prsz")},
    {Kind::property, "source", safari::source},
    {Kind::property, "URL", safari::url},
    {Kind::property, "version", applescript::fourCharCode("vers")},
    {Kind::property, "visible", applescript::fourCharCode("pvis")},
    {Kind::property, "zoomable", applescript::fourCharCode("iszm")},
    {Kind::property, "zoomed", applescript::fourCharCode("pzum")},

    Term::command("do javascript", safari::doJavaScript, javaScriptParameters),
    {Kind::command, "make", 0, {}, events::make, makeParameters, Term::DirectParameter::none},
};

} // namespace

const applescript::Terminology& safariTerminology() {
  static const applescript::Terminology terminology("Safari", safariTerms);
  return terminology;
}

} // namespace tabwright::scripting
