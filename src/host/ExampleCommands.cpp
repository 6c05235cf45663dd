// Each example is an action of its own that is filled step by step from its declared examples: a choice that is set
// decides which of the later parameters count. No command line is written by hand, so an example can't name a parameter
// that isn't there, and those that come to the same line are told once.
#include "host/ExampleCommands.h"

#include <algorithm>

namespace tabwright::host {

namespace {

std::string quotedForShell(const std::string& text) {
  // Characters that no POSIX shell reads as its own; all else goes into single quotes.
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789%+,-./:=@_";
  if (!text.empty() && text.find_first_not_of(plain) == std::string::npos)
    return text;
  std::string quoted = "'";
  for (const char character : text)
    quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
  return quoted + "'";
}

enum class Fill { whatIsMissing, allExamples };

// Gives parameters the example of their declaration, where they count at this point: setting a choice may make later
// ones count.
ExampleCommand completed(intents::Intent& action, ParameterTexts chosen, Fill fill) {
  for (const auto& [name, text] : chosen)
    action.findParameter(name)->setText(text);
  ExampleCommand example{.parameters = std::move(chosen), .commandLine = "tabwright run " + action.name()};
  for (intents::ParameterBase* parameter : action.parameters()) {
    const std::string& text = parameter->declaration().example;
    // Asked anew for each parameter, as the last one may have been a choice.
    const intents::SummaryRow& row = action.summary().current();
    // A parameter that may be left out is missing only where the sentence needs it.
    const bool isMissing =
        !parameter->hasValue() && (parameter->declaration().presence == intents::Presence::required ||
                                   std::ranges::find(row.sentence, parameter) != row.sentence.end());
    if (text.empty() || !row.shows(*parameter) || (fill == Fill::whatIsMissing && !isMissing))
      continue;
    parameter->setText(text);
    example.parameters.emplace_back(parameter->name(), text);
  }
  // A tab or window that is given makes the choice that it needs.
  for (const auto& [parameter, condition, counts] : action.dependences()) {
    const auto isOf = [](const intents::ParameterBase* one) {
      return [one](const auto& given) { return given.first == one->name(); };
    };
    if (counts == intents::Dependence::Counts::whileItHolds && std::ranges::any_of(example.parameters, isOf(parameter)))
      std::erase_if(example.parameters, isOf(condition.parameter));
  }
  for (const auto& [name, text] : example.parameters)
    example.commandLine += " --" + name + " " + quotedForShell(text);
  return example;
}

} // namespace

std::vector<ExampleCommand> exampleCommands(const Catalogue& catalogue, std::string_view name) {
  std::vector<ExampleCommand> examples;
  const auto add = [&](ParameterTexts chosen, Fill fill) {
    ExampleCommand example = completed(*catalogue.make(name), std::move(chosen), fill);
    if (std::ranges::find(examples, example.commandLine, &ExampleCommand::commandLine) == examples.end())
      examples.push_back(std::move(example));
  };
  add({}, Fill::whatIsMissing);
  add({}, Fill::allExamples);
  for (const intents::SummaryRow& row : catalogue.declaration(name).summary().rows) {
    ParameterTexts chosen;
    for (const intents::SummaryCondition& condition : row.when) {
      // A choice that is the default needn't be written.
      if (!condition.holds())
        chosen.emplace_back(condition.parameter->name(), condition.caseName);
    }
    if (!chosen.empty())
      add(std::move(chosen), Fill::whatIsMissing);
  }
  return examples;
}

} // namespace tabwright::host
