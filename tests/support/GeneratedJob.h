#pragma once

#include "engine/AppleScriptSnippets.h"
#include "engine/ScriptLayers.h"

#include <cstddef>
#include <stdexcept>
#include <string>

namespace tabwright::testsupport {

/// Variables as they are made for one job.
inline const engine::JobVariables jobVariables{.result = "__01JDA0000000000000000000RE",
                                               .canary = "__01JDA0000000000000000000CA"};

/// The value of the AppleScript literal that follows `before` in a program.
inline std::string literalAfter(const std::string& program, const std::string& before) {
  const std::size_t begin = program.find(before + '"');
  if (begin == std::string::npos)
    throw std::logic_error("the program has no “" + before + "”");
  std::string text;
  for (std::size_t at = begin + before.size() + 1; at < program.size() && program[at] != '"'; ++at) {
    if (program[at] == '\\')
      ++at;
    text += program[at];
  }
  return text;
}

/// The program's lines about a job.
inline std::string jobProgram(const std::string& body) {
  return engine::preparedBody(engine::AppleScriptSnippets::asyncJob(body, 1, 0.25, jobVariables));
}

/// The code of a job as the engine generates it, and as the language hands it on.
inline std::string generatedJob(const std::string& body) {
  return literalAfter(jobProgram(body), "set jsJobCode to ");
}

} // namespace tabwright::testsupport
