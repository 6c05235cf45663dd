#pragma once

#include "applescript/terminology/Terminology.h"

#include <array>

/// The commands, classes and properties that nearly every application has. They hold too where the target of a `tell`
/// is only known at run time.
namespace tabwright::applescript::language {

using enum Term::Kind;

/// `new` may be left out and `at` be written `in`: the parser knows both from the codes of these rows.
inline constexpr auto makeParameters = std::to_array<ParameterTerm>({
    {"new", keywords::elementClass},
    {"at", keywords::insertionLocation},
    {"with data", keywords::data},
    {"with properties", keywords::withProperties},
});
inline constexpr auto countParameters = std::to_array<ParameterTerm>({{"each", keywords::elementClass}});
inline constexpr auto closeParameters = std::to_array<ParameterTerm>({
    {"saving", fourCharCode("savo")},
    {"saving in", fourCharCode("kfil")},
});
inline constexpr auto quitParameters = std::to_array<ParameterTerm>({{"saving", fourCharCode("savo")}});
inline constexpr auto moveParameters = std::to_array<ParameterTerm>({{"to", keywords::insertionLocation}});
inline constexpr auto duplicateParameters = std::to_array<ParameterTerm>({
    {"to", keywords::insertionLocation},
    {"with properties", keywords::withProperties},
});
inline constexpr auto openParameters =
    std::to_array<ParameterTerm>({{"with properties", keywords::withProperties}, {"using", fourCharCode("usin")}});
inline constexpr auto saveParameters =
    std::to_array<ParameterTerm>({{"in", fourCharCode("kfil")}, {"as", fourCharCode("fltp")}});
inline constexpr auto printParameters = std::to_array<ParameterTerm>(
    {{"with properties", keywords::withProperties}, {"print dialog", fourCharCode("pdlg")}});

/// `make` takes no direct parameter: a class right behind it is its `new`.
inline constexpr auto standardCommands = std::to_array<Term>({
    {command, "activate", 0, {}, events::activate},
    {command, "close", 0, {}, events::close, closeParameters},
    {command, "count", 0, {}, events::count, countParameters},
    {command, "delete", 0, {}, events::remove},
    {command, "duplicate", 0, {}, {fourCharCode("core"), fourCharCode("clon")}, duplicateParameters},
    {command, "exists", 0, {}, events::exists},
    {command, "get", 0, {}, events::get},
    {command, "idle", 0, {}, {fourCharCode("misc"), fourCharCode("idle")}},
    {command, "launch", 0, {}, events::launch},
    {command, "make", 0, {}, events::make, makeParameters, Term::DirectParameter::none},
    {command, "move", 0, {}, {fourCharCode("core"), fourCharCode("move")}, moveParameters},
    {command, "open", 0, {}, events::open, openParameters},
    {command, "print", 0, {}, {fourCharCode("aevt"), fourCharCode("pdoc")}, printParameters},
    {command, "quit", 0, {}, events::quit, quitParameters},
    {command, "reopen", 0, {}, events::reopen},
    {command, "run", 0, {}, events::run},
    {command, "save", 0, {}, {fourCharCode("core"), fourCharCode("save")}, saveParameters},
    {command, "select", 0, {}, {fourCharCode("misc"), fourCharCode("slct")}},
});

inline constexpr auto standardClasses = std::to_array<Term>({
    {className, "application", fourCharCode("capp"), "applications"},
    {className, "document", fourCharCode("docu"), "documents"},
    {className, "window", fourCharCode("cwin"), "windows"},
});

inline constexpr auto standardProperties = std::to_array<Term>({
    {property, "bounds", fourCharCode("pbnd")},
    {property, "frontmost", fourCharCode("pisf")},
    {property, "id", fourCharCode("ID  ")},
    {property, "index", fourCharCode("pidx")},
    {property, "name", fourCharCode("pnam")},
    {property, "position", fourCharCode("posn")},
    {property, "running", fourCharCode("prun")},
    {property, "selection", fourCharCode("sele")},
    {property, "version", fourCharCode("vers")},
    {property, "visible", fourCharCode("pvis")},
});

} // namespace tabwright::applescript::language
