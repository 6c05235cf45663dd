// The words before the last are read as the parser would read them: which command, which of its operands are there, and
// whether the last word is a value that an option waits for.
#include "app/Completion.h"

#include "app/CommandDeclarations.h"
#include "client/RunWords.h"
#include "host/ActionWords.h"
#include "intents/EntityDeclaration.h"
#include "intents/UsageError.h"
#include "platform/StringCatalogue.h"
#include "platform/TerminalCells.h"
#include "targets/SupportedBrowsers.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <optional>
#include <span>

namespace tabwright::app {
namespace {

using intents::ParameterBase;
using intents::ValueKind;
using Words = std::span<const std::string>;

constexpr std::string_view optionMark = "--";
constexpr std::string_view saveFiles = client::runWords::saveFiles.word;

void add(Completion& completion, std::string word, std::string_view meaning) {
  completion.candidates.push_back({std::move(word), platform::onOneLine(meaning)});
}

void addActions(Completion& completion, const host::Catalogue& catalogue) {
  for (const auto& action : catalogue.declarations())
    add(completion, action->name(), action->title().text());
}

void addOptions(Completion& completion, const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames())
      add(completion, std::string(optionMark) + name, option->get_description());
  }
}

void addValues(Completion& completion, const intents::ParameterDeclaration& declaration,
               const CandidateSource& things) {
  if (declaration.type.kind == ValueKind::boolean) {
    add(completion, "true", "");
    add(completion, "false", "");
  }
  for (host::OfferedValue& offer : host::offersOf(declaration))
    add(completion, std::move(offer.text), offer.caption);
  // Browsers are entities with choices of their own; tabs and windows have none, and must be asked for.
  if (declaration.type.kind == ValueKind::entity && !declaration.options && things) {
    for (const Candidate& thing : things(declaration.type))
      add(completion, thing.word, thing.meaning);
  }
}

// The name and, where it was written so, the value of a word like “--name=value”.
std::string nameOf(const std::string& word) {
  return word.substr(optionMark.size(), word.find('=') - optionMark.size());
}

bool isOption(const std::string& word) {
  return word.starts_with(optionMark) && word.size() > optionMark.size();
}

bool holdsFiles(const intents::ValueType& type) {
  return type.kind == ValueKind::file ||
         (type.kind == ValueKind::entity &&
          std::ranges::any_of(type.entity->properties,
                              [](const intents::PropertyDeclaration& property) { return holdsFiles(property.type); }));
}

void addLogLevels(Completion& completion, const std::string& before) {
  for (const char* level : {"debug", "info", "error"})
    add(completion, before + level, "");
}

// The parameters of an action, of which the words before the last were given already.
Completion parameterCompletion(const CLI::App& command, const host::Catalogue& catalogue, const std::string& name,
                               Words given, const std::string& last, const CandidateSource& things) {
  Completion completion;
  const intents::Intent* action = nullptr;
  try {
    action = &catalogue.declaration(name);
  } catch (const intents::UsageError&) {
    return completion;
  }
  // The parameter whose value the next word is.
  const ParameterBase* waiting = nullptr;
  std::vector<std::string> names;
  for (const std::string& word : given) {
    // A flag takes no value where another option follows.
    const bool isValue = waiting && (waiting->declaration().type.kind != ValueKind::boolean || !isOption(word));
    waiting = nullptr;
    if (isValue || !isOption(word))
      continue;
    names.push_back(nameOf(word));
    if (word.find('=') == std::string::npos)
      waiting = action->findParameter(names.back());
  }
  // A candidate stands for the whole word, so the name and the sign go with it.
  if (const std::size_t equals = last.find('='); !waiting && isOption(last) && equals != std::string::npos) {
    if (const ParameterBase* parameter = action->findParameter(nameOf(last))) {
      addValues(completion, parameter->declaration(), things);
      for (Candidate& candidate : completion.candidates)
        candidate.word.insert(0, last, 0, equals + 1);
    }
    completion.takesFiles = last.starts_with(saveFiles) || last[equals + 1] == '@';
    return completion;
  }
  if (!given.empty() && given.back() == saveFiles) {
    completion.takesFiles = true;
    return completion;
  }
  if (waiting) {
    addValues(completion, waiting->declaration(), things);
    // “@” stands before the name of a file that holds the value.
    completion.takesFiles = waiting->declaration().type.kind == ValueKind::file || last.starts_with('@');
    // Behind a flag its value may stand as well as the next parameter.
    if (waiting->declaration().type.kind != ValueKind::boolean)
      return completion;
  }
  for (const ParameterBase* parameter : action->parameters()) {
    if (std::ranges::find(names, parameter->name()) == names.end())
      add(completion, std::string(optionMark) + parameter->name(), parameter->declaration().title.text());
  }
  addOptions(completion, command);
  // A result without files has none to save.
  if (!holdsFiles(action->resultType()))
    std::erase_if(completion.candidates, [](const Candidate& each) { return each.word == saveFiles; });
  add(completion, "--help", platform::localized("completion.help"));
  return completion;
}

void addOperand(Completion& completion, const CLI::App& program, const std::string& kind,
                const host::Catalogue& catalogue) {
  if (kind == operands::action) {
    addActions(completion, catalogue);
  } else if (kind == operands::word) {
    for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; }))
      add(completion, command->get_name(), command->get_description());
    addActions(completion, catalogue);
  } else if (kind == operands::browser) {
    for (const engine::TargetContext& browser : targets::supportedBrowsers()) {
      // Scripts may name Safari, but there is no program of it to start.
      if (browser.id != "com.apple.safari")
        add(completion, std::string(targets::shortNameOf(browser)), browser.name);
    }
  } else if (kind == operands::shell) {
    for (const char* shell : {"bash", "zsh", "fish"})
      add(completion, shell, "");
  } else if (kind == operands::file) {
    completion.takesFiles = true;
  }
}

Completion commandCompletion(const CLI::App& command, const host::Catalogue& catalogue, Words given,
                             const std::string& last, const CandidateSource& things) {
  std::vector<const CLI::Option*> positionals;
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_positional())
      positionals.push_back(option);
  }
  // A lone “-” is an operand: standard input.
  std::size_t operandWords = 0;
  const CLI::Option* waiting = nullptr; // for its value, such as NAME=VALUE
  for (std::size_t index = 0; index < given.size(); ++index) {
    const std::string& word = given[index];
    if (std::exchange(waiting, nullptr))
      continue;
    if (word.starts_with('-') && word != "-") {
      const CLI::Option* option = command.get_option_no_throw(word);
      waiting = option && !option->get_positional() && option->get_items_expected_max() > 0 ? option : nullptr;
      continue;
    }
    if (command.get_prefix_command()) // an action's name, and its parameters behind it
      return parameterCompletion(command, catalogue, word, given.subspan(index + 1), last, things);
    ++operandWords;
  }
  Completion completion;
  if (waiting) {
    completion.takesFiles = waiting->get_name() == saveFiles;
    return completion;
  }
  if (operandWords < positionals.size() && !isOption(last))
    addOperand(completion, *command.get_parent(), positionals[operandWords]->get_name(true), catalogue);
  if (last.starts_with('-'))
    addOptions(completion, command);
  return completion;
}

Completion anyCompletion(const CLI::App& program, const host::Catalogue& catalogue, Words given,
                         const std::string& last, const CandidateSource& things) {
  const auto commands = program.get_subcommands([](const CLI::App*) { return true; });
  // The first word that is a command; options of the program may stand before it.
  for (std::size_t index = 0; index < given.size(); ++index) {
    const auto command =
        std::ranges::find(commands, given[index], [](const CLI::App* each) { return each->get_name(); });
    if (command != commands.end())
      return commandCompletion(**command, catalogue, given.subspan(index + 1), last, things);
  }
  Completion completion;
  if (!given.empty() && given.back() == "--log-level") {
    addLogLevels(completion, "");
    return completion;
  }
  if (last.starts_with("--log-level=")) {
    addLogLevels(completion, "--log-level=");
    return completion;
  }
  if (last.starts_with('-')) {
    addOptions(completion, program);
    return completion;
  }
  for (const CLI::App* command : commands)
    add(completion, command->get_name(), command->get_description());
  return completion;
}

} // namespace

Completion completionOf(const CLI::App& program, const host::Catalogue& catalogue,
                        const std::vector<std::string>& words, const CandidateSource& things) {
  const std::string last = words.empty() ? std::string() : words.back();
  const Words given(words.data(), words.empty() ? 0 : words.size() - 1);
  // Only here are candidates held against what has been typed: those who collect them offer all.
  Completion completion = anyCompletion(program, catalogue, given, last, things);
  std::erase_if(completion.candidates, [&](const Candidate& candidate) { return !candidate.word.starts_with(last); });
  return completion;
}

} // namespace tabwright::app
