// The words behind an action's name are read by its declaration, which is known only with the name. A parameter takes
// the word behind it whatever that looks like, since texts may begin with dashes; only a boolean one doesn't take an
// option. Files are noted here and read by whoever runs the action: for the background host they are the client's.
#include "app/ParameterArguments.h"

#include "app/TextInput.h"
#include "client/RunWords.h"
#include "intents/UsageError.h"
#include "intents/ValueType.h"

#include <fmt/core.h>

#include <optional>
#include <string_view>
#include <utility>

namespace tabwright::app {
namespace {

namespace runWords = client::runWords;
using intents::UsageError;
using intents::ValueKind;

// A browser is an entity too, but is named by a word, and "-" or "@" begin no such word.
bool isReadFromFiles(const intents::ParameterBase* parameter) {
  return parameter && (parameter->declaration().type.kind == ValueKind::entity ||
                       parameter->declaration().type.kind == ValueKind::file);
}

bool isBoolean(const intents::ParameterBase* parameter) {
  return parameter && parameter->declaration().type.kind == ValueKind::boolean;
}

// The file that stands for a value; nothing when the value is one itself.
std::optional<std::string> fileIn(const std::string& value) {
  if (value == "-")
    return value;
  if (value.starts_with("@"))
    return value.substr(1);
  return std::nullopt;
}

/// The parameters that tell an element, and the choice by which one does so by a selector, if there is any.
constexpr struct {
  std::string_view parameter;
  std::string_view choice;
} elementParameters[]{{"cssSelector", ""},
                      {"belowElement", ""},
                      {"fieldTargetSpec", "formFieldSelection"},
                      {"targetField", "formFieldSelection"}};

// Puts an element into the parameters as the action has it. Its place among them is where it can be read from a file.
void giveElement(const intents::Intent& action, std::string element, ParameterArguments& result) {
  for (const auto& [parameter, choice] : elementParameters) {
    if (!action.findParameter(parameter))
      continue;
    if (std::optional<std::string> file = fileIn(element))
      result.files.push_back({.parameter = result.parameters.size(), .file = std::move(*file)});
    result.parameters.emplace_back(parameter, std::move(element));
    if (!choice.empty())
      result.parameters.emplace_back(choice, "cssSelector");
    return;
  }
  throw UsageError(fmt::format("{} works on no element, so --element says nothing to it. “tabwright actions {}” lists "
                               "its parameters.",
                               action.name(), action.name()));
}

} // namespace

ParameterArguments parseArguments(const intents::Intent& action, const std::vector<std::string>& words) {
  ParameterArguments result;
  for (std::size_t index = 0; index < words.size(); ++index) {
    const std::string& word = words[index];
    if (word == runWords::json.word) {
      result.output = OutputForm::json;
      continue;
    }
    if (word == runWords::each.word) {
      result.isForEach = true;
      continue;
    }
    if (word == runWords::noHost.word) // the program that reads this runs the action itself
      continue;
    if (word == "--help" || word == "-h") {
      result.wantsHelp = true;
      continue;
    }
    if (!word.starts_with("--") || word.size() == 2)
      throw UsageError(
          fmt::format("“{}” belongs to no parameter. Parameters of {} are written --name value; “tabwright "
                      "actions {}” lists them.",
                      word, action.name(), action.name()));
    const std::size_t equals = word.find('=');
    std::string name = word.substr(2, equals == std::string::npos ? std::string::npos : equals - 2);
    // The words of the command's own that take a value, in either way of writing.
    const bool isForFiles = word.substr(0, equals) == runWords::saveFiles.word;
    const bool isElement = word.substr(0, equals) == runWords::element.word;
    const intents::ParameterBase* parameter = action.findParameter(name);
    std::optional<std::string> value;
    if (equals != std::string::npos)
      value = word.substr(equals + 1);
    else if (isBoolean(parameter) && (index + 1 == words.size() || words[index + 1].starts_with("--")))
      value = "true";
    else if (index + 1 < words.size())
      value = words[++index];
    // An unknown name goes on without a value: the reader of parameters names those nearest to it.
    else if (parameter || isForFiles || isElement)
      throw UsageError(fmt::format("--{} needs a value behind it.", name));
    if (isForFiles) {
      result.filesFolder = value;
      continue;
    }
    if (isElement) {
      giveElement(action, std::move(*value), result);
      continue;
    }
    if (std::optional<std::string> file = value && isReadFromFiles(parameter) ? fileIn(*value) : std::nullopt)
      result.files.push_back({.parameter = result.parameters.size(), .file = std::move(*file)});
    result.parameters.emplace_back(std::move(name), value.value_or(""));
  }
  return result;
}

ParameterArguments readArguments(const intents::Intent& action, const std::vector<std::string>& words) {
  ParameterArguments result = parseArguments(action, words);
  for (const ParameterFile& wanted : std::exchange(result.files, {}))
    result.parameters[wanted.parameter].second = wanted.file == "-" ? readStandardInput() : readTextFile(wanted.file);
  return result;
}

} // namespace tabwright::app
