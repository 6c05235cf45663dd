// Help is laid out here and worded in the string catalogues: everything specific to an action comes from its
// declaration.
#include "host/ActionHelp.h"

#include "host/ActionWords.h"
#include "host/ExampleCommands.h"
#include "intents/EntityDeclaration.h"
#include "platform/StringCatalogue.h"
#include "platform/TerminalCells.h"

#include <fmt/format.h>

#include <algorithm>

namespace tabwright::host {

namespace {

using intents::ParameterDeclaration;
using intents::ValueKind;

// The form for the defaults, which help shows without its condition.
const intents::SummaryRow& mainRow(const intents::Intent& action) {
  return action.summary().current();
}

std::string choicesOf(const ParameterDeclaration& declaration) {
  std::string lines;
  if (declaration.type.kind == ValueKind::enumeration) {
    const intents::EnumDeclaration& declared = *declaration.type.enumeration;
    // Cases have captions, so they stand in two columns; offered values are told in running text.
    std::size_t widest = 0;
    for (const intents::EnumCase& enumCase : declared.cases)
      widest = std::max(widest, enumCase.name.size());
    for (const intents::EnumCase& enumCase : declared.cases)
      lines += "        " + std::string(enumCase.name) + std::string(widest - enumCase.name.size() + 2, ' ') +
               declared.caption(enumCase).text() + "\n";
  } else if (declaration.options) {
    for (const intents::OptionSection& section : declaration.options->results()) {
      std::string texts;
      for (const intents::Option& option : section.options)
        texts += (texts.empty() ? "" : ", ") + option.text + " (" + option.title + ")";
      if (!texts.empty())
        lines += platform::wrapped(section.label + ": " + texts, 8);
    }
  }
  return lines;
}

std::string parameterHelp(const intents::Intent& action, const intents::ParameterBase& parameter) {
  const ParameterDeclaration& declaration = parameter.declaration();
  std::string help = "  --" + declaration.name + " <" + captionOf(declaration.type) + ">\n";
  help += platform::wrapped(declaration.title.text() + ": " + platform::onOneLine(declaration.description.text()), 6);
  help += choicesOf(declaration);
  if (action.isAlwaysNeeded(parameter))
    help += "      " + platform::localized("help.needed") + "\n";
  if (const std::string text = defaultOf(declaration); !text.empty())
    help += "      " + platform::localizedFormat("help.default", {text}) + "\n";
  return help;
}

std::string resultHelp(const intents::ValueType& type) {
  std::string help = "  " + captionOf(type) + "\n";
  if (type.kind != ValueKind::entity)
    return help;
  const std::string names = fmt::format("{}", fmt::join(type.entity->propertyNames(), ", "));
  return help + platform::wrapped(platform::localizedFormat("help.properties", {names}), 6);
}

std::string heading(std::string_view key) {
  return "\n" + platform::localized(key) + "\n";
}

} // namespace

std::string catalogueHelp(const Catalogue& catalogue, std::size_t lineWidth) {
  std::string help;
  std::size_t widest = 0;
  for (const auto& action : catalogue.declarations())
    widest = std::max(widest, action->name().size());
  for (const auto& action : catalogue.declarations()) {
    // Indented by as many blanks as the longest name takes; each name then stands in place of its share of them.
    const std::string sentence = platform::wrapped(sentenceOf(*action, mainRow(*action)), widest + 2, lineWidth);
    help += action->name() + sentence.substr(action->name().size());
  }
  return help;
}

std::string actionHelp(const Catalogue& catalogue, std::string_view name) {
  const intents::Intent& action = catalogue.declaration(name);
  std::string help = action.name() + " - " + action.title().text() + "\n\n";

  help += platform::wrapped(sentenceOf(action, mainRow(action)), 2);
  for (const intents::SummaryRow& row : action.summary().rows) {
    // It stands first already.
    if (&row == &mainRow(action))
      continue;
    const std::string sentence = sentenceOf(action, row);
    help += platform::wrapped(row.when.empty() ? platform::localizedFormat("help.otherwise", {sentence})
                                               : platform::localizedFormat("help.with", {conditionOf(row), sentence}),
                              2);
  }

  help += heading("help.parameters");
  for (const intents::ParameterBase* parameter : action.parameters())
    help += parameterHelp(action, *parameter);

  help += heading("help.result") + resultHelp(action.resultType());

  help += heading("help.examples");
  for (const ExampleCommand& example : exampleCommands(catalogue, name))
    help += "  " + example.commandLine + "\n";
  return help;
}

} // namespace tabwright::host
