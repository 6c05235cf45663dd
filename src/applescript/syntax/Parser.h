#pragma once

#include "applescript/ScriptError.h"
#include "applescript/events/ApplicationDirectory.h"
#include "applescript/syntax/Tree.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace tabwright::applescript {

/// Bounds on what the parser takes on: beyond them it reports a syntax error, it never crashes. The parser recurses as
/// deep as `nesting`, whoever walks a tree as deep as `height`; both have to fit the thread's stack.
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
///     ParseResult result = parse("set x to 1", directory);
///     if (!result.tree)
///       throw result.errors.front();
///
/// The enclosing `tell` decides which words are a dictionary's: `directory` gives the terminology of applications that
/// the text names literally; inside a `tell` whose target is only known at run time, the general words of
/// languageTerminology() hold. The tree points into terminologies, so `directory` must outlive it; no application is
/// asked for.
///
/// Mistakes of the script are in the answer, never thrown. `source` is to be well-formed UTF-8, which the Interpreter
/// sees to. Uses nothing but its arguments: any thread may parse.
[[nodiscard]] ParseResult parse(std::string source, const ApplicationDirectory& directory,
                                const ParserLimits& limits = {});

} // namespace tabwright::applescript
