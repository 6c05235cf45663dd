#pragma once

#include "applescript/SyntaxDictionaries.h"
#include "applescript/TreeDump.h"
#include "applescript/syntax/Parser.h"

#include <fmt/core.h>

#include <string>

namespace tabwright::applescript::test {

/// The tree of a script as `dump` shows it, without the last line end; or its errors, one a line.
inline std::string parsed(const std::string& source) {
  const SyntaxDictionaries dictionaries;
  const ParseResult result = parse(source, dictionaries);
  std::string text;
  if (result.tree)
    text = dump(*result.tree);
  for (const ScriptError& error : result.errors) {
    const SourceRange range = error.range().value_or(SourceRange{});
    const SourcePosition place = positionOf(source, range.offset);
    text += fmt::format("{}:{}+{} {} ({})\n", place.line, place.column, range.length, error.sentence(), error.number());
  }
  return text.empty() ? text : text.substr(0, text.size() - 1);
}

/// A script, and what `parsed` gives.
struct ParserCase {
  std::string source;
  std::string expected;
};

} // namespace tabwright::applescript::test
