#pragma once

#include "applescript/terminology/EventCode.h"
#include "applescript/terminology/FoldedWords.h"

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabwright::applescript {

/// A parameter of a command, by the words in front of it: `with properties`, `using`, `given`. Words that one writes
/// behind `with` and `without` only (`administrator privileges`) stand without these.
struct ParameterTerm {
  std::string_view words;
  FourCharCode code = 0;
};

/// A row of a dictionary: words a script may write, and the code they stand for. Words are lower case except where the
/// dictionary writes capitals (`URL`); comparison ignores case. Several words are separated by single blanks, and there
/// are eight at most, as many as the parser looks at.
///
///     {Term::Kind::className, "tab", fourCharCode("CrTb"), "tabs"}
struct Term {
  enum class Kind {
    className,  ///< `window`; `plural` holds `windows`
    property,   ///< `active tab index`
    enumerator, ///< `command down`
    command,    ///< `execute`; `event` and `parameters` are set
  };
  Kind kind = Kind::property;
  std::string_view words;
  /// 0 for a command, which has an event instead.
  FourCharCode code = 0;
  /// Classes only; empty for one that is never spoken of in the plural.
  std::string_view plural = {};
  /// Commands only.
  EventCode event = {};
  /// Commands only, in any order: where several fit, the one of most words is taken. The direct parameter is not among
  /// them.
  std::span<const ParameterTerm> parameters = {};
  /// A command that takes no direct parameter (`current date`) leaves what follows it to the expression around it.
  enum class DirectParameter { optional, none };
  DirectParameter directParameter = DirectParameter::optional;

  /// A command whose direct parameter may be given.
  [[nodiscard]] static constexpr Term command(std::string_view words, EventCode event,
                                              std::span<const ParameterTerm> parameters = {}) {
    return {Kind::command, words, 0, {}, event, parameters};
  }
};

/// The dictionary of an application, or the language's own.
///
/// A terminology is a constant table with an index: it is made once from rows that outlive it (tables with static
/// storage), and never changes. Safe to read from several threads.
class Terminology {
public:
  /// `rows` and all that they point to must outlive the terminology. Asserts that no words stand twice for different
  /// codes of the same kind.
  Terminology(std::string name, std::span<const Term> rows);

  /// For people: the application's name, or `AppleScript`.
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] std::span<const Term> rows() const { return rows_; }

  /// A term that some words begin with.
  struct Match {
    /// One of `rows()`; never null in an answer.
    const Term* term = nullptr;
    bool isPlural = false; ///< the plural of a class was written
    std::size_t words = 0; ///< how many words it took
  };
  /// The longest term that the given words begin with (any case), or nothing. A word may stand for a class and for a
  /// property at once (`window`, `tab`): all matches of the longest length, in the table's order. The answer lives as
  /// long as the terminology.
  [[nodiscard]] std::span<const Match> longestMatch(std::span<const std::string_view> words) const;
  /// Some term begins with that word.
  [[nodiscard]] bool hasFirstWord(std::string_view word) const;

  /// The words for a code, for the printer and for messages: the first row of that kind, or null when the table has
  /// none. Commands have no code: see `findCommand`.
  [[nodiscard]] const Term* findCode(Term::Kind kind, FourCharCode code) const;
  /// The command that sends an event; null when the table has none.
  [[nodiscard]] const Term* findCommand(EventCode event) const;

private:
  std::string name_;
  std::span<const Term> rows_;
  /// All terms of the same words.
  struct Entry {
    std::vector<std::string_view> words;
    std::vector<Match> matches;
  };
  void add(std::string_view words, const Term& term, bool isPlural);
  /// By first word, ignoring case; the entries of one first word from the longest to the shortest.
  std::unordered_map<std::string_view, std::vector<Entry>, FoldedHash, FoldedEqual> byFirstWord_;
};

/// The words of the language itself: classes (`text`, `list`), constants (`missing value`, `pi`, `linefeed`), text
/// elements (`character`, `word`, `paragraph`, `text item`), properties (`length`, `class`, `contents`, `rest`,
/// `reverse`, `text item delimiters`, parts of dates), the standard suite (`count`, `make`, `close`, `activate`,
/// `quit`, `get`, `set`, `exists`, `window`, `name`, `id`, `index`, `bounds`, `visible`, `frontmost`, `version`) and
/// the scripting additions (`delay`, `offset`, `random number`, `round`, `current date`, `log`, …).
[[nodiscard]] const Terminology& languageTerminology();

} // namespace tabwright::applescript
