#include "app/Composition.h"
#include "app/commands/Commands.h"
#include "client/CallerSide.h"
#include "host/ActionHelp.h"
#include "host/CatalogueDocument.h"
#include "host/JsonSchema.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <iostream>

namespace tabwright::app {
namespace {

boost::json::object descriptionOf(const intents::Intent& action) {
  boost::json::object description;
  description["name"] = action.name();
  description["title"] = action.title().text();
  description["inputSchema"] = host::inputSchema(action);
  description["outputSchema"] = host::outputSchema(action);
  return description;
}

} // namespace

ExitCode actions(const ActionsCommand& command) {
  Composition composition;
  const host::Catalogue& catalogue = composition.catalogue();
  // The document is part of the sources, so its choices are those of no machine.
  if (command.isReference) {
    std::cout << host::catalogueDocument(composition.referenceCatalogue());
    return ExitCode::done;
  }
  if (command.output == OutputForm::json) {
    boost::json::array list;
    for (const auto& action : catalogue.declarations())
      list.push_back(descriptionOf(*action));
    if (command.name)
      std::cout << boost::json::serialize(descriptionOf(catalogue.declaration(*command.name))) << '\n';
    else
      std::cout << boost::json::serialize(list) << '\n';
    return ExitCode::done;
  }
  // Lines are broken for a person only; a pipe gets each action on one.
  const client::TerminalFacts terminal = client::terminalFacts();
  std::cout << (command.name        ? host::actionHelp(catalogue, *command.name)
                : terminal.isOutput ? host::catalogueHelp(catalogue, static_cast<std::size_t>(terminal.width))
                                    : host::catalogueHelp(catalogue));
  return ExitCode::done;
}

} // namespace tabwright::app
