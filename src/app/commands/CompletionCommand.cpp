#include "app/Completion.h"
#include "app/Composition.h"
#include "app/commands/Commands.h"
#include "intents/UsageError.h"
#include "tabwright_appResources.h"

#include <iostream>

namespace tabwright::app {

ExitCode completion(const std::string& shell) {
  if (shell == "bash")
    std::cout << resources::tabwright_bash;
  else if (shell == "zsh")
    std::cout << resources::tabwright_zsh;
  else if (shell == "fish")
    std::cout << resources::tabwright_fish;
  else
    throw intents::UsageError("There is no completion for “" + shell + "”: choose bash, zsh or fish.");
  return ExitCode::done;
}

ExitCode complete(const CLI::App& program, const std::vector<std::string>& words) {
  const Composition composition;
  const Completion completion = completionOf(program, composition.catalogue(), words);
  for (const Candidate& candidate : completion.candidates)
    std::cout << candidate.word << (candidate.meaning.empty() ? "" : "\t") << candidate.meaning << '\n';
  if (completion.takesFiles)
    std::cout << ":files\n";
  return ExitCode::done;
}

} // namespace tabwright::app
