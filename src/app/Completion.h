#pragma once

#include "host/Catalogue.h"
#include "intents/ValueType.h"

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tabwright::app {

/// A word that may stand at a place of the command line.
struct Candidate {
  /// As it is to stand there in place of the whole last word; without quotes, which are the shell's matter.
  std::string word;
  std::string meaning; ///< one line; may be empty

  friend bool operator==(const Candidate&, const Candidate&) = default;
};

/// All that may stand in place of the last word. Empty and without files where nothing can be offered.
struct Completion {
  std::vector<Candidate> candidates;
  bool takesFiles = false; ///< names of files may stand there, too
};

/// The tabs or windows that there are, for a parameter of that type. Asked only where one may stand; may be empty. It
/// bounds its own time, since somebody waits at a prompt, and offers nothing rather than throw.
using CandidateSource = std::function<std::vector<Candidate>(const intents::ValueType& type)>;

/// All that may stand in place of the last of `words`, which are those behind the program's name; the last one is empty
/// when nothing of it has been typed. Only candidates that begin as the last word does. Commands and options come from
/// the declared `program`; actions, parameters and choices from the catalogue; tabs and windows from `things`. Never
/// throws for words that make no sense: nothing is offered for them.
[[nodiscard]] Completion completionOf(const CLI::App& program, const host::Catalogue& catalogue,
                                      const std::vector<std::string>& words, const CandidateSource& things = {});

} // namespace tabwright::app
