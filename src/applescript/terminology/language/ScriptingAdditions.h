#pragma once

#include "applescript/terminology/Terminology.h"

#include <array>

/// The commands that come with every system rather than with an application. A row gives a command its words only; its
/// function is a row in `evaluate/ScriptingAdditions.cpp`, which refuses those that scripts may not use here.
///
/// Commands that take their object behind a word (`offset of … in …`) or none at all are of DirectParameter::none:
/// `current date - 3` subtracts.
namespace tabwright::applescript::language {

using enum Term::Kind;

inline constexpr auto offsetParameters =
    std::to_array<ParameterTerm>({{"of", fourCharCode("psof")}, {"in", fourCharCode("psin")}});
inline constexpr auto randomParameters = std::to_array<ParameterTerm>({
    {"from", fourCharCode("from")},
    {"to", fourCharCode("to  ")},
    {"with seed", fourCharCode("seed")},
});
inline constexpr auto roundParameters = std::to_array<ParameterTerm>({{"rounding", fourCharCode("dire")}});
/// Parameters that are true or false stand without their `with`: `with administrator privileges`.
inline constexpr auto shellParameters = std::to_array<ParameterTerm>({
    {"as", fourCharCode("rtyp")},
    {"administrator privileges", fourCharCode("badm")},
    {"altering line endings", fourCharCode("alen")},
});
inline constexpr auto dialogParameters = std::to_array<ParameterTerm>({
    {"default answer", fourCharCode("dtxt")},
    {"hidden answer", fourCharCode("htxt")},
    {"buttons", fourCharCode("btns")},
    {"default button", fourCharCode("dflt")},
    {"cancel button", fourCharCode("cbtn")},
    {"with title", fourCharCode("appr")},
    {"with icon", fourCharCode("disp")},
    {"giving up after", fourCharCode("givu")},
});
inline constexpr auto notificationParameters = std::to_array<ParameterTerm>({
    {"with title", fourCharCode("appr")},
    {"subtitle", fourCharCode("subt")},
    {"sound name", fourCharCode("nsou")},
});
inline constexpr auto chooseParameters = std::to_array<ParameterTerm>({
    {"with title", fourCharCode("appr")},
    {"with prompt", fourCharCode("prmp")},
    {"default items", fourCharCode("inSL")},
    {"OK button name", fourCharCode("okbt")},
    {"cancel button name", fourCharCode("cnbt")},
    {"multiple selections allowed", fourCharCode("mlsl")},
    {"empty selection allowed", fourCharCode("empL")},
});
inline constexpr auto runScriptParameters =
    std::to_array<ParameterTerm>({{"with parameters", fourCharCode("plst")}, {"in", fourCharCode("scsy")}});
inline constexpr auto sayParameters = std::to_array<ParameterTerm>({{"using", fourCharCode("VOIC")}});
inline constexpr auto clipboardParameters = std::to_array<ParameterTerm>({{"as", fourCharCode("rtyp")}});
inline constexpr auto readParameters = std::to_array<ParameterTerm>({
    {"from", fourCharCode("rdfm")},
    {"for", fourCharCode("rdfr")},
    {"to", fourCharCode("rdto")},
    {"as", fourCharCode("as  ")},
});

inline constexpr auto scriptingAdditions = std::to_array<Term>({
    {command, "ASCII character", 0, {}, {fourCharCode("sysb"), fourCharCode("ntoa")}},
    {command, "ASCII number", 0, {}, {fourCharCode("sysb"), fourCharCode("aton")}},
    {command, "beep", 0, {}, {fourCharCode("syso"), fourCharCode("beep")}},
    {command, "choose from list", 0, {}, {fourCharCode("gtqp"), fourCharCode("chlt")}, chooseParameters},
    {command, "current date", 0, {}, {fourCharCode("misc"), fourCharCode("curd")}, {}, Term::DirectParameter::none},
    {command, "delay", 0, {}, {fourCharCode("sysd"), fourCharCode("dela")}},
    {command, "display dialog", 0, {}, {fourCharCode("syso"), fourCharCode("dlog")}, dialogParameters},
    {command, "display notification", 0, {}, {fourCharCode("noti"), fourCharCode("disp")}, notificationParameters},
    {command, "do shell script", 0, {}, {fourCharCode("syso"), fourCharCode("exec")}, shellParameters},
    {command, "log", 0, {}, {fourCharCode("ascr"), fourCharCode("cmnt")}},
    {command,
     "offset",
     0,
     {},
     {fourCharCode("syso"), fourCharCode("offs")},
     offsetParameters,
     Term::DirectParameter::none},
    {command, "random number", 0, {}, {fourCharCode("sysv"), fourCharCode("rand")}, randomParameters},
    {command, "read", 0, {}, {fourCharCode("rdwr"), fourCharCode("read")}, readParameters},
    {command, "round", 0, {}, {fourCharCode("sysv"), fourCharCode("rnd ")}, roundParameters},
    {command, "run script", 0, {}, {fourCharCode("sysv"), fourCharCode("dsct")}, runScriptParameters},
    {command, "say", 0, {}, {fourCharCode("sysv"), fourCharCode("ttos")}, sayParameters},
    {command, "set the clipboard to", 0, {}, {fourCharCode("JonS"), fourCharCode("pClp")}},
    {command,
     "the clipboard",
     0,
     {},
     {fourCharCode("JonS"), fourCharCode("gClp")},
     clipboardParameters,
     Term::DirectParameter::none},
    {command, "time to GMT", 0, {}, {fourCharCode("misc"), fourCharCode("gmt ")}, {}, Term::DirectParameter::none},
});

} // namespace tabwright::applescript::language
