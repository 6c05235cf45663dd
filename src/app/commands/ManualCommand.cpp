#include "app/Composition.h"
#include "app/ManualPage.h"
#include "app/commands/Commands.h"

#include <iostream>
#include <string>
#include <vector>

namespace tabwright::app {

ExitCode manual(const CLI::App& program, const std::string& action) {
  const Composition composition;
  const host::Catalogue& catalogue = composition.referenceCatalogue();
  std::cout << manualPage(program, catalogue,
                          action.empty() ? catalogue.names() : std::vector{catalogue.make(action)->name()});
  return ExitCode::done;
}

} // namespace tabwright::app
