#pragma once

#include "applescript/terminology/Terminology.h"

#include <array>

/// Constants of the language. Those that stand for a text or a number (`linefeed`, `pi`) have codes of this project's
/// own where none is published; the parser turns all of them into their values (parseConstant in ParsePrimaries.cpp).
/// All others stay constants, compared by code.
namespace tabwright::applescript::language {

using enum Term::Kind;

inline constexpr auto constants = std::to_array<Term>({
    {enumerator, "missing value", fourCharCode("msng")},
    {enumerator, "null", fourCharCode("null")},
    {enumerator, "AppleScript", fourCharCode("ascr")},
    {enumerator, "pi", fourCharCode("pi  ")},
    {enumerator, "linefeed", fourCharCode("lnfd")},
    {enumerator, "tab", fourCharCode("tab ")},
    {enumerator, "space", fourCharCode("spac")},
    {enumerator, "quote", fourCharCode("quot")},
    {enumerator, "minutes", fourCharCode("min ")},
    {enumerator, "hours", fourCharCode("hour")},
    {enumerator, "days", fourCharCode("days")},
    {enumerator, "weeks", fourCharCode("week")},
    {enumerator, "yes", fourCharCode("yes ")},
    {enumerator, "no", fourCharCode("no  ")},
    {enumerator, "ask", fourCharCode("ask ")},
    {enumerator, "case", fourCharCode("case")},
    {enumerator, "diacriticals", fourCharCode("diac")},
    {enumerator, "white space", fourCharCode("whit")},
    {enumerator, "hyphens", fourCharCode("hyph")},
    {enumerator, "expansion", fourCharCode("expa")},
    {enumerator, "punctuation", fourCharCode("punc")},
    {enumerator, "numeric strings", fourCharCode("nume")},
    {enumerator, "application responses", fourCharCode("rmte")},
    {enumerator, "January", fourCharCode("jan ")},
    {enumerator, "February", fourCharCode("feb ")},
    {enumerator, "March", fourCharCode("mar ")},
    {enumerator, "April", fourCharCode("apr ")},
    {enumerator, "May", fourCharCode("may ")},
    {enumerator, "June", fourCharCode("jun ")},
    {enumerator, "July", fourCharCode("jul ")},
    {enumerator, "August", fourCharCode("aug ")},
    {enumerator, "September", fourCharCode("sep ")},
    {enumerator, "October", fourCharCode("oct ")},
    {enumerator, "November", fourCharCode("nov ")},
    {enumerator, "December", fourCharCode("dec ")},
    {enumerator, "Sunday", fourCharCode("sun ")},
    {enumerator, "Monday", fourCharCode("mon ")},
    {enumerator, "Tuesday", fourCharCode("tue ")},
    {enumerator, "Wednesday", fourCharCode("wed ")},
    {enumerator, "Thursday", fourCharCode("thu ")},
    {enumerator, "Friday", fourCharCode("fri ")},
    {enumerator, "Saturday", fourCharCode("sat ")},
    // Ways of rounding
    {enumerator, "up", fourCharCode("up  ")},
    {enumerator, "down", fourCharCode("down")},
    {enumerator, "toward zero", fourCharCode("tozr")},
    {enumerator, "to nearest", fourCharCode("near")},
    {enumerator, "as taught in school", fourCharCode("half")},
});

} // namespace tabwright::applescript::language
