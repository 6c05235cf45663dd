// The parser's own complaint names the word at which it stopped, which often isn't the wrong one. So the words are gone
// through again: for the first option that doesn't belong where it stands, then for a word where a command must be, and
// each is answered with the names nearest to it. The catalogue is only made for that, as a right command line has no
// need of it here.
#include "app/CommandNames.h"

#include "app/Composition.h"
#include "client/RunWords.h"
#include "host/ActionHelp.h"
#include "host/NearestNames.h"
#include "intents/UsageError.h"
#include "platform/AsciiCase.h"

#include <CLI/CLI.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <iostream>
#include <optional>
#include <sstream>
#include <string_view>

namespace tabwright::app {
namespace {

using intents::UsageError;

struct Synonym {
  std::string_view word;
  std::string_view command;
};
/// Words by which other programs call what ours call otherwise.
constexpr Synonym synonyms[]{
    {"list", "actions"}, {"ls", "actions"},   {"catalogue", "actions"}, {"commands", "help"},
    {"man", "manual"},   {"open", "browser"}, {"start", "browser"},     {"launch", "browser"},
    {"exec", "run"},     {"do", "run"},       {"perform", "run"},       {"osascript", "applescript"},
    {"serve", "mcp"},    {"md", "markdown"},
};

std::vector<const CLI::App*> commandsOf(const CLI::App& program) {
  return program.get_subcommands([](const CLI::App*) { return true; });
}

const CLI::App* commandNamed(const CLI::App& program, std::string_view name) {
  for (const CLI::App* command : commandsOf(program)) {
    if (platform::equalIgnoringCase(command->get_name(), name))
      return command;
  }
  return nullptr;
}

UsageError unknown(const std::string& word, const CLI::App& program, const host::Catalogue& catalogue) {
  const std::vector<std::string> actions = catalogue.names();
  // An action without “run” in front of it.
  for (const std::string& action : actions) {
    if (platform::equalIgnoringCase(action, word))
      return UsageError(fmt::format("“{}” is an action: tabwright run {} …", word, action));
  }
  const auto* synonym =
      std::ranges::find_if(synonyms, [&](const Synonym& row) { return platform::equalIgnoringCase(row.word, word); });
  if (synonym != std::end(synonyms))
    return UsageError("There is no command “" + word + "”. Did you mean " + std::string(synonym->command) + "?");
  std::vector<std::string> names;
  for (const CLI::App* command : commandsOf(program))
    names.push_back(command->get_name());
  names.insert(names.end(), actions.begin(), actions.end());
  return UsageError("There is no command “" + word + "”." +
                    host::didYouMean(word, names, " “tabwright help” shows all."));
}

// The first word that stands where a command must.
std::optional<std::string> commandWord(const std::vector<std::string>& words) {
  for (std::size_t index = 0; index < words.size(); ++index) {
    // The one option before all commands that takes a value.
    if (words[index] == "--log-level")
      ++index;
    else if (!words[index].starts_with('-'))
      return words[index];
  }
  return std::nullopt;
}

std::vector<std::string> optionWords(const CLI::App& command) {
  std::vector<std::string> words;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames())
      words.push_back("--" + name);
  }
  return words;
}

bool hasOption(const CLI::App& command, const std::string& word) {
  const std::vector<std::string> options = optionWords(command);
  return std::ranges::find(options, word) != options.end() ||
         (command.get_name() == "run" && std::ranges::find(client::runWords::all, std::string_view(word),
                                                           &client::RunWord::word) != client::runWords::all.end());
}

/// A word that begins with `--` and is no option where it stands; `command` is null in front of all commands.
UsageError misplaced(const std::string& word, const CLI::App* command, const CLI::App& program) {
  if (command)
    return UsageError(fmt::format("“tabwright {}” has no option “{}”.", command->get_name(), word) +
                      host::didYouMean(word, optionWords(*command),
                                       fmt::format(" “tabwright help {}” shows its options.", command->get_name())));
  for (const CLI::App* each : commandsOf(program)) {
    if (hasOption(*each, word))
      return UsageError(fmt::format("“{}” stands behind its command: tabwright {} {} …", word, each->get_name(), word));
  }
  return UsageError(fmt::format("There is no option “{}”.", word) +
                    host::didYouMean(word, optionWords(program), " “tabwright help” shows all commands."));
}

/// The first word that is no option where it stands. The parser reads on behind one in front of all commands, and
/// complains of what follows.
std::optional<UsageError> misplacedOption(const CLI::App& program, const std::vector<std::string>& words) {
  const std::optional<std::string> name = commandWord(words);
  const CLI::App* command = nullptr;
  for (const std::string& whole : words) {
    const std::string word = whole.substr(0, whole.find('='));
    if (!command && name && word == *name)
      command = commandNamed(program, *name);
    else if (word.starts_with("--") && !hasOption(command ? *command : program, word))
      return misplaced(word, command, program);
  }
  return std::nullopt;
}

} // namespace

ExitCode tellOf(const CLI::ParseError& error, const CLI::App& program, const std::vector<std::string>& words) {
  std::ostringstream output;
  std::ostringstream mistake;
  // CLI11 throws for help and version, too; they exit with 0.
  if (program.exit(error, output, mistake) == 0) {
    std::cout << output.str();
    return ExitCode::done;
  }
  if (const auto option = misplacedOption(program, words))
    throw UsageError(*option);
  const std::optional<std::string> word = commandWord(words);
  const CLI::App* const command = word ? commandNamed(program, *word) : nullptr;
  if (word && !command) {
    const Composition composition;
    throw unknown(*word, program, composition.catalogue());
  }
  const std::string help = command ? "tabwright help " + command->get_name() : "tabwright help";
  throw UsageError(fmt::format("{}. “{}” shows how it is used.", error.what(), help));
}

std::string helpOn(const std::string& word, const CLI::App& program) {
  if (word.empty()) // of the program itself: its own function speaks for the command that was parsed
    return program.get_formatter()->make_help(&program, program.get_name(), CLI::AppFormatMode::Normal);
  if (const CLI::App* command = commandNamed(program, word))
    return command->help(program.get_name());
  const Composition composition;
  const std::vector<std::string> actions = composition.catalogue().names();
  if (std::ranges::none_of(actions, [&](const std::string& name) { return platform::equalIgnoringCase(name, word); }))
    throw unknown(word, program, composition.catalogue());
  return host::actionHelp(composition.catalogue(), word);
}

} // namespace tabwright::app
