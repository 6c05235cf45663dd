// The document is laid out here; every word of it comes from the declarations and the string catalogues.
#include "host/CatalogueDocument.h"

#include "host/ActionWords.h"
#include "host/ExampleCommands.h"
#include "intents/EntityDeclaration.h"
#include "platform/StringCatalogue.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::host {

namespace {

using intents::ParameterDeclaration;
using intents::ValueKind;
using platform::localized;
using platform::localizedFormat;

// Text inside of a table's cell or a line: what Markdown would read as its own is escaped.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (std::string_view("\\`*_<>|#[]").find(character) != std::string_view::npos)
      result += '\\';
    result += character == '\n' ? ' ' : character;
  }
  return result;
}

std::string code(std::string_view text) {
  return text.empty() ? std::string() : "`" + std::string(text) + "`";
}

std::string rowOf(const std::vector<std::string>& cells) {
  std::string row = "|";
  for (const std::string& cell : cells)
    row += " " + cell + " |";
  return row + "\n";
}

std::string sentencesOf(const intents::Intent& action) {
  std::string text;
  for (const intents::SummaryRow& row : action.summary().rows) {
    const std::string sentence = sentenceOf(action, row);
    text += "- ";
    if (!row.when.empty())
      text += escaped(localizedFormat("help.with", {conditionOf(row), sentence}));
    // The form without a condition is the rest of several, or the only one.
    else if (action.summary().rows.size() > 1)
      text += escaped(localizedFormat("help.otherwise", {sentence}));
    else
      text += escaped(sentence);
    text += "\n";
  }
  return text;
}

std::string parametersOf(const intents::Intent& action) {
  std::string text = rowOf({localized("reference.parameter"), localized("reference.type"),
                            localized("reference.default"), localized("reference.meaning")}) +
                     rowOf({"---", "---", "---", "---"});
  for (const intents::ParameterBase* parameter : action.parameters()) {
    const ParameterDeclaration& declaration = parameter->declaration();
    const std::string initial =
        action.isAlwaysNeeded(*parameter) ? localized("reference.needed") : code(defaultOf(declaration));
    text += rowOf({code(declaration.name), escaped(captionOf(declaration.type)), initial,
                   "**" + escaped(declaration.title.text()) + ".** " + escaped(declaration.description.text())});
  }
  return text;
}

// Choices with captions are a list; names of browsers tell themselves.
std::string choiceRows(const ParameterDeclaration& declaration) {
  std::string items;
  for (const OfferedValue& offer : offersOf(declaration)) {
    if (declaration.type.kind == ValueKind::enumeration)
      items += "\n  - " + code(offer.text) + " " + escaped(offer.caption);
    else
      items += (items.empty() ? " " : ", ") + code(offer.text);
  }
  return items.empty() ? items : "- " + code(declaration.name) + ":" + items + "\n";
}

std::string resultOf(const intents::ValueType& type) {
  std::string text = localizedFormat("reference.result", {captionOf(type)});
  // The names that workflows and agents go into it by.
  if (type.kind == ValueKind::entity) {
    text += fmt::format(" (`{}`)", fmt::join(type.entity->propertyNames(), "`, `"));
  }
  return text + "\n";
}

std::string sectionOf(const Catalogue& catalogue, const intents::Intent& action) {
  std::string text = "### " + action.name() + "\n\n" + escaped(action.title().text()) + ".\n\n" + sentencesOf(action) +
                     "\n" + parametersOf(action);
  std::string choices;
  for (const intents::ParameterBase* parameter : action.parameters())
    choices += choiceRows(parameter->declaration());
  if (!choices.empty())
    text += "\n" + localized("reference.choices") + "\n\n" + choices;
  text += "\n" + resultOf(action.resultType()) + "\n```sh\n";
  for (const ExampleCommand& example : exampleCommands(catalogue, action.name()))
    text += example.commandLine + "\n";
  return text + "```\n";
}

} // namespace

std::string catalogueDocument(const Catalogue& catalogue) {
  std::string document = "# " + localized("reference.title") + "\n\n" + localized("reference.introduction") + "\n";
  std::vector<std::pair<std::string, std::string>> sections; // of each string table, in the order of its first action
  for (const auto& action : catalogue.declarations()) {
    auto section = std::ranges::find(sections, action->table(), &std::pair<std::string, std::string>::first);
    // A section per string table: actions of one kind have their texts in one.
    if (section == sections.end())
      section = sections.insert(section, {action->table(), {}});
    section->second += "\n" + sectionOf(catalogue, *action);
  }
  for (const auto& [table, text] : sections)
    document.append("\n## ").append(localized("reference.section." + table)).append("\n").append(text);
  return document;
}

} // namespace tabwright::host
