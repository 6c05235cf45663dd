#include "app/Composition.h"
#include "app/ManualPage.h"
#include "app/commands/Commands.h"

#include <iostream>

namespace tabwright::app {

ExitCode manual(const CLI::App& program) {
  const Composition composition;
  std::cout << manualPage(program, composition.referenceCatalogue());
  return ExitCode::done;
}

} // namespace tabwright::app
