#pragma once

#include "applescript/terminology/Terminology.h"

#include <array>

/// Classes of the language's values, the elements of text and lists, and the properties of values. Codes are those
/// published with the Open Scripting Architecture (AppleScript.h, ASRegistry.h).
///
/// The parser tells by the first table which plurals (`lists`, `numbers`) may be names of variables: those of values,
/// not those of elements.
namespace tabwright::applescript::language {

using enum Term::Kind;

inline constexpr auto valueClasses = std::to_array<Term>({
    {className, "item", fourCharCode("cobj"), "items"},
    {className, "character", fourCharCode("cha "), "characters"},
    {className, "word", fourCharCode("cwor"), "words"},
    {className, "paragraph", fourCharCode("cpar"), "paragraphs"},
    {className, "text item", fourCharCode("citm"), "text items"},
    {className, "text", fourCharCode("ctxt")},
    {className, "string", fourCharCode("TEXT")},
    {className, "Unicode text", fourCharCode("utxt")},
    {className, "integer", fourCharCode("long"), "integers"},
    {className, "real", fourCharCode("doub"), "reals"},
    {className, "number", fourCharCode("nmbr"), "numbers"},
    {className, "boolean", fourCharCode("bool"), "booleans"},
    {className, "list", fourCharCode("list"), "lists"},
    {className, "record", fourCharCode("reco"), "records"},
    {className, "date", fourCharCode("ldt "), "dates"},
    {className, "class", fourCharCode("type")},
    {className, "type class", fourCharCode("type")},
    {className, "constant", fourCharCode("enum")},
    {className, "script", fourCharCode("scpt"), "scripts"},
    {className, "handler", fourCharCode("hand"), "handlers"},
    {className, "reference", fourCharCode("obj ")},
    {className, "anything", fourCharCode("****")},
    {className, "alias", fourCharCode("alis"), "aliases"},
    {className, "file", fourCharCode("file"), "files"},
    {className, "POSIX file", fourCharCode("psxf")},
    {className, "weekday", fourCharCode("wkdy")},
    {className, "month", fourCharCode("mnth")},
});

inline constexpr auto valueProperties = std::to_array<Term>({
    {property, "class", fourCharCode("pcls")},
    {property, "contents", fourCharCode("pcnt")},
    {property, "length", fourCharCode("leng")},
    {property, "rest", fourCharCode("rest")},
    {property, "reverse", fourCharCode("rvse")},
    {property, "properties", fourCharCode("pALL")},
    {property, "parent", fourCharCode("pare")},
    {property, "quoted form", fourCharCode("strq")},
    {property, "POSIX path", fourCharCode("psxp")},
    {property, "text item delimiters", fourCharCode("txdl")},
    // Parts of dates.
    {property, "year", fourCharCode("year")},
    {property, "month", fourCharCode("mnth")},
    {property, "day", fourCharCode("day ")},
    {property, "weekday", fourCharCode("wkdy")},
    {property, "time", fourCharCode("time")},
    {property, "hours", fourCharCode("hour")},
    {property, "minutes", fourCharCode("min ")},
    {property, "seconds", fourCharCode("scnd")},
    {property, "date string", fourCharCode("dstr")},
    {property, "time string", fourCharCode("tstr")},
    {property, "short date string", fourCharCode("shdt")},
});

} // namespace tabwright::applescript::language
