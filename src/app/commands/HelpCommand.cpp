#include "app/CommandNames.h"
#include "app/commands/Commands.h"

#include <iostream>

namespace tabwright::app {

ExitCode help(const CLI::App& program, const std::string& word) {
  std::cout << helpOn(word, program);
  return ExitCode::done;
}

} // namespace tabwright::app
