#include "app/TerminalHost.h"

#include <iostream>
#include <unistd.h>

namespace tabwright::app {

bool TerminalHost::isTerminal() {
  return ::isatty(STDIN_FILENO) == 1;
}

std::optional<std::string> TerminalHost::ask(const std::string& question) {
  if (!isTerminal())
    return std::nullopt;
  std::cerr << question << ' ' << std::flush;
  std::string line;
  if (!std::getline(std::cin, line))
    return std::nullopt;
  return line;
}

platform::Task<void> TerminalHost::requestConfirmation(intents::LocalizedText question) {
  const std::string answer = ask(question.text() + " [y/N]").value_or("");
  const char first = answer.empty() ? 'n' : answer.front();
  if (first != 'y' && first != 'Y' && first != 'j' && first != 'J')
    throw intents::ConfirmationRefused();
  co_return;
}

} // namespace tabwright::app
