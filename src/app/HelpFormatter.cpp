#include "app/HelpFormatter.h"

#include "platform/TerminalCells.h"

#include <algorithm>
#include <sstream>

namespace tabwright::app {
namespace {

constexpr std::size_t secondColumn = 22;

std::string lines(const std::string& text) {
  std::istringstream paragraphs(text);
  std::string result;
  for (std::string paragraph; std::getline(paragraphs, paragraph);)
    result += platform::wrapped(paragraph, 0);
  return result;
}

// A term and, beside it where there is room, else beneath it, what it means.
std::string helpEntry(const std::string& term, const std::string& meaning) {
  const std::string head = "  " + term;
  std::string rest = platform::wrapped(meaning, secondColumn);
  const std::size_t width = platform::cellsOf(head);
  // At least two blanks part the columns.
  if (rest.empty() || width + 2 > secondColumn)
    return head + "\n" + rest;
  // The first line is indented by blanks, which the term takes the place of.
  return head + rest.substr(width);
}

} // namespace

std::string HelpFormatter::make_description(const CLI::App* app) const {
  return lines(app->get_description());
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
  return helpEntry(make_option_name(option, isPositional) + (isPositional ? std::string() : make_option_opts(option)),
                   option->get_description());
}

std::string HelpFormatter::make_subcommand(const CLI::App* command) const {
  return helpEntry(command->get_name(), command->get_description());
}

std::string HelpFormatter::make_footer(const CLI::App* app) const {
  return lines(app->get_footer());
}

} // namespace tabwright::app
