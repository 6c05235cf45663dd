#include "app/Composition.h"
#include "app/ManualPage.h"
#include "app/commands/Commands.h"

#include <iostream>
#include <string>

namespace tabwright::app {

ExitCode manual(const CLI::App& program, const std::string& action) {
  const Composition composition;
  std::cout << manualPage(program, composition.referenceCatalogue(), action);
  return ExitCode::done;
}

} // namespace tabwright::app
