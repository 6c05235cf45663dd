#pragma once

#include "applescript/ScriptError.h"
#include "applescript/events/ApplicationDirectory.h"
#include "applescript/syntax/Tree.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace tabwright::applescript {

/// Bounds on what the parser takes on: beyond them it reports a syntax error, it never crashes.
struct ParserLimits {
  std::size_t sourceBytes = 64u << 20;
  std::size_t nesting = 500; ///< blocks and expressions inside each other
  std::size_t height = 2000; ///< levels of one expression's tree: `a & b & c …` grows one level per operator
  std::size_t errors = 50;   ///< after that many the rest of the text isn't looked at
};

/// The outcome for a text: a tree when there are no errors, else every error found, in source order, each with its
/// range. After an error the parser goes on at the next line, so that one run shows more than one mistake.
struct ParseResult {
  std::unique_ptr<SyntaxTree> tree; ///< null when there are errors
  std::vector<ScriptError> errors;  ///< Stage::syntax
};

/// Parses a script.
///
/// The enclosing `tell` decides which words are a dictionary's: `directory` gives the terminology of applications
/// that the text names literally; inside a `tell` whose target is only known at run time, the general words of
/// languageTerminology() hold. The tree points into terminologies, so `directory` must outlive it.
[[nodiscard]] ParseResult parse(std::string source, const ApplicationDirectory& directory,
                                const ParserLimits& limits = {});

} // namespace tabwright::applescript
