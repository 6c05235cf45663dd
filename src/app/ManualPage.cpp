// The page's frame is a resource with placeholders. The commands are filled in from the parser's own declarations and
// the actions from the catalogue, so the manual knows what the program knows. Every text from there goes through
// `roff`: a dot at the start of a line would otherwise be an order to the typesetter.
#include "app/ManualPage.h"

#include "host/ActionWords.h"
#include "intents/EntityDeclaration.h"
#include "platform/StringCatalogue.h"
#include "tabwright_appResources.h"

#include <CLI/CLI.hpp>

#include <string_view>

namespace tabwright::app {
namespace {

using intents::ValueKind;

// Text that roff takes as it stands: a backslash, a hyphen that stays one, and a line that begins with a dot or a
// quote.
std::string roff(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    const bool isLineStart = escaped.empty() || escaped.back() == '\n';
    if (character == '\\')
      escaped += "\\e";
    else if (character == '-')
      escaped += "\\-";
    else if (isLineStart && (character == '.' || character == '\''))
      escaped += std::string("\\&") + character;
    else
      escaped += character;
  }
  return escaped;
}

std::string bold(std::string_view text) {
  return "\\fB" + roff(text) + "\\fR";
}

std::string italic(std::string_view text) {
  return "\\fI" + roff(text) + "\\fR";
}

std::string manualEntry(const std::string& term, const std::string& text) {
  return ".TP\n" + term + "\n" + text + "\n";
}

std::string optionRows(const CLI::App& command) {
  std::string text;
  for (const CLI::Option* option : command.get_options()) {
    // Operands are told with their command.
    if (option->get_positional() || option->get_lnames().empty())
      continue;
    std::string term = bold("--" + option->get_lnames().front());
    // Flags have no value to name.
    if (option->get_items_expected_max() > 0)
      term += " " + italic(option->get_type_name());
    text += manualEntry(term, roff(option->get_description()));
  }
  return text;
}

std::string commandSections(const CLI::App& program) {
  std::string text;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    std::string term = bold(command->get_name());
    std::string operands;
    for (const CLI::Option* option : command->get_options()) {
      if (!option->get_positional())
        continue;
      const std::string name = option->get_name(true);
      term += option->get_required() ? " " + italic(name) : " [" + italic(name) + "]";
      operands += manualEntry(italic(name), roff(option->get_description()));
    }
    text += manualEntry(term, roff(command->get_description()) + ".");
    if (!command->get_footer().empty())
      text += roff(command->get_footer()) + "\n";
    text += ".RS\n" + operands + optionRows(*command) + ".RE\n";
  }
  return text;
}

std::string choicesOf(const intents::ValueType& type) {
  if (type.kind != ValueKind::enumeration)
    return {};
  std::string choices;
  for (const intents::EnumCase& enumCase : type.enumeration->cases)
    choices += (choices.empty() ? "" : ", ") + bold(enumCase.name) + " (" +
               roff(type.enumeration->caption(enumCase).text()) + ")";
  return ".br\n" + choices + "\n";
}

std::string sectionOf(const intents::Intent& action) {
  std::string text = ".SS " + action.name() + "\n" + roff(host::sentenceOf(action, action.summary().current())) + "\n";
  for (const intents::ParameterBase* parameter : action.parameters()) {
    const intents::ParameterDeclaration& declaration = parameter->declaration();
    std::string meaning = roff(declaration.description.text()) + "\n" + choicesOf(declaration.type);
    if (const std::string initial = host::defaultOf(declaration); !initial.empty())
      meaning += ".br\n" + roff(platform::localizedFormat("help.default", {initial})) + "\n";
    text += manualEntry(bold("--" + declaration.name) + " " + italic(host::captionOf(declaration.type)), meaning);
  }
  return text + ".PP\n" + roff(platform::localizedFormat("reference.result", {host::captionOf(action.resultType())})) +
         "\n";
}

std::string actionSections(const host::Catalogue& catalogue, const std::string& name) {
  if (!name.empty())
    return sectionOf(catalogue.declaration(name));
  std::string text;
  for (const auto& action : catalogue.declarations())
    text += sectionOf(*action);
  return text;
}

void replacePlaceholder(std::string& page, std::string_view placeholder, const std::string& text) {
  page.replace(page.find(placeholder), placeholder.size(), text);
}

} // namespace

std::string manualPage(const CLI::App& program, const host::Catalogue& catalogue, const std::string& action) {
  std::string page(resources::tabwright_1);
  replacePlaceholder(page, "@VERSION@", TABWRIGHT_VERSION);
  replacePlaceholder(page, "@COMMANDS@\n", commandSections(program));
  replacePlaceholder(page, "@OPTIONS@\n", optionRows(program));
  replacePlaceholder(page, "@ACTIONS@\n", actionSections(catalogue, action));
  // The typesetter warns of empty lines, which parts with nothing to say leave.
  for (std::size_t gap; (gap = page.find("\n\n")) != std::string::npos;)
    page.erase(gap, 1);
  return page;
}

} // namespace tabwright::app
