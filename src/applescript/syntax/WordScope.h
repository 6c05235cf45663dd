#pragma once

#include "applescript/lexer/Token.h"
#include "applescript/terminology/FoldedWords.h"
#include "applescript/terminology/Terminology.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// The terms that some words begin with, all of the same length. A value of fixed size: it is made at nearly every
/// word.
class TermMatches {
public:
  [[nodiscard]] bool empty() const { return size_ == 0; }
  [[nodiscard]] const Terminology::Match& front() const { return matches_.front(); }
  [[nodiscard]] const Terminology::Match* begin() const { return matches_.data(); }
  [[nodiscard]] const Terminology::Match* end() const { return matches_.data() + size_; }
  /// The preferred of one kind; null when there is none. Lives as long as this value.
  [[nodiscard]] const Terminology::Match* find(Term::Kind kind) const;

  void clear() { size_ = 0; }
  /// Adds matches behind those there are, which are preferred to them. Those that no longer fit are dropped: they are
  /// the least preferred.
  void add(std::span<const Terminology::Match> matches);

private:
  std::array<Terminology::Match, 6> matches_ = {};
  std::size_t size_ = 0;
};

/// The meaning of words at one place of a script: the dictionaries that hold there, and the names that the script
/// itself has bound.
///
/// Dictionaries are asked from the innermost `tell` outwards, then those of `use`, then the language's own, and last
/// those of applications named later on the same line (`name of window 1 of application "X"`). The longest term wins;
/// among equally long ones the first asked. A `tell` to something only known at run time brings no words, and leaves
/// those of the tells around it.
///
/// Outside of any `tell` to an application, a single word of a dictionary may also be a variable of the script (`repeat
/// with URL in xs`); inside of one, a dictionary's word is never a variable, but for plurals of value classes
/// (isVariableDespite in ParseExpressions.h).
class WordScope {
public:
  WordScope();

  /// Enters a `tell` or `using terms from`. `terminology` is null where the target is only known at run time.
  void enterTell(const Terminology* terminology);
  /// Enters a `tell` to the script itself, which has no dictionary.
  void enterOwnTell();
  /// Leaves the `tell` entered last; one for each of the two above.
  void leaveTell();
  /// `use application "X"`: from here to the end of the script. Terminologies must outlive the scope.
  void use(const Terminology& terminology);
  /// Dictionaries of the applications named on the line that begins here, in place of those of the line before.
  void startLine(std::vector<const Terminology*> mentioned);

  /// Inside of a `tell` to something else than the script, known or not, or of a `using terms from`.
  [[nodiscard]] bool isInTell() const { return tells_ > 0; }

  /// Enters a handler or a script: what is bound there is forgotten at its end.
  void enterBody() { names_.emplace_back(); }
  void leaveBody() { names_.pop_back(); }
  /// From here on the name is a variable of the innermost body. It must outlive that: a token's text does.
  void bind(std::string_view name) { names_.back().insert(name); }
  /// The script has bound that word so far, in this body or one around it; ignoring case.
  [[nodiscard]] bool isBound(std::string_view name) const;

  /// The terms that the tokens begin with: all of the longest length, the preferred first.
  ///
  /// A single reserved word is never a term (`given` in `given x:1`), though a longer term may begin with one
  /// (`given name`).
  [[nodiscard]] TermMatches match(std::span<const Token> tokens) const;
  /// The preferred of the matches of one kind.
  [[nodiscard]] std::optional<Terminology::Match> match(std::span<const Token> tokens, Term::Kind kind) const;

  /// The command for an event, from the innermost `tell` whose dictionary has it, else the language's own; dictionaries
  /// of `use` and of the line aren't asked. Never null for the language's own commands.
  [[nodiscard]] const Term* findCommand(EventCode event) const;

private:
  struct Layer {
    const Terminology* terminology; ///< null: not known before run time
    bool isForeign;                 ///< a `tell` to something else than the script
  };
  std::vector<Layer> layers_; ///< the innermost last
  std::vector<const Terminology*> used_;
  std::vector<const Terminology*> mentioned_;
  /// Foreign layers among `layers_`.
  std::size_t tells_ = 0;

  /// By body, the innermost last; the first is the whole script's.
  std::vector<FoldedNames> names_;
};

} // namespace tabwright::applescript
