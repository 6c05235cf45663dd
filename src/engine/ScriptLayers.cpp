// The layers are prepared once per family, like an action's own lines, and kept as a template; all that a run pays for
// is the preparation of its own lines and one pass of copying. This equals joining everything first and cleaning up the
// whole, because the action's lines stand on a line of their own and because argument keys and ids hold neither line
// breaks nor placeholders nor calls.
#include "engine/ScriptLayers.h"

#include "engine/ScriptText.h"
#include "platform/Whitespace.h"
#include "tabwright_engineResources.h"

#include <array>

namespace tabwright::engine {

using platform::TextTemplate;

namespace {

std::string qualifyingResultCalls(std::string_view text) {
  // The order matters: the first row is a longer form of the second.
  struct Call {
    std::string_view plain;
    std::string_view qualified;
  };
  static constexpr std::array<Call, 3> calls{{{"return success()", "return my success({})"},
                                              {"return success(", "return my success("},
                                              {"return failure(", "return my failure("}}};
  std::string result;
  result.reserve(text.size() + text.size() / 16);
  std::size_t start = 0;
  for (std::size_t at = text.find("return "); at != std::string_view::npos; at = text.find("return ", at + 1)) {
    for (const Call& call : calls) {
      if (text.substr(at).starts_with(call.plain)) {
        result += text.substr(start, at - start);
        result += call.qualified;
        start = at + call.plain.size();
        break;
      }
    }
  }
  result += text.substr(start);
  return result;
}

// Takes the first line off the text, and yields it as it goes into a program: empty when it doesn't.
std::string_view takeCleanLine(std::string_view& text) {
  constexpr std::string_view blanks = " \t";
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  const std::size_t first = line.find_first_not_of(blanks);
  if (first == std::string_view::npos)
    return {};
  line = line.substr(first, line.find_last_not_of(blanks) - first + 1);
  return line.starts_with("--") || platform::isBlank(line) ? std::string_view() : line;
}

// Every line that stays ends in a line feed.
std::string cleanLines(std::string_view text) {
  std::string result;
  result.reserve(text.size() + 1);
  while (!text.empty()) {
    const std::string_view line = takeCleanLine(text);
    if (line.empty())
      continue;
    result += line;
    result += '\n';
  }
  return result;
}

TextTemplate layersWith(std::string_view familyLibrary) {
  std::string layers = preparedBody(std::string(resources::scriptPreludeBase_applescript) + std::string(familyLibrary));
  // The body brings its own line feeds, so that an empty one leaves no empty line.
  constexpr std::string_view bodyLine = "\n__APPLESCRIPT__\n";
  const std::size_t body = layers.find(bodyLine);
  layers.erase(body + bodyLine.size() - 1, 1);
  // Filled here, once: of the two libraries only one asks its browser by a resource.
  constexpr std::string_view question = "__VERSION_QUESTION__";
  if (const std::size_t at = layers.find(question); at != std::string::npos)
    layers.replace(at, question.size(), escapeForLiteral(TextTemplate(resources::versionQuestion_js).fill({})));
  return TextTemplate(layers);
}

} // namespace

const TextTemplate& scriptLayers(std::string_view targetID) {
  static const TextTemplate safari = layersWith(resources::safariLibrary_applescript);
  static const TextTemplate chromium = layersWith(resources::chromiumLibrary_applescript);
  return targetID == "com.apple.safari" ? safari : chromium;
}

std::string preparedBody(std::string_view appleScript) {
  return cleanLines(qualifyingResultCalls(appleScript));
}

std::optional<std::size_t> sourceLine(std::string_view appleScript, std::size_t preparedLine) {
  // Counts as `cleanLines` does, over the same lines.
  std::size_t prepared = 0;
  for (std::size_t line = 1; !appleScript.empty(); ++line) {
    prepared += takeCleanLine(appleScript).empty() ? 0 : 1;
    if (prepared == preparedLine)
      return line;
  }
  return std::nullopt;
}

} // namespace tabwright::engine
