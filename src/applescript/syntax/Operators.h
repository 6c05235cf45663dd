#pragma once

#include "applescript/lexer/Token.h"
#include "applescript/syntax/Tree.h"
#include "applescript/values/Numbers.h"
#include "applescript/values/ObjectSpecifier.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// The operators of the language: how tightly each binds, in how many ways it may be written, and which comparison or
/// calculation it stands for.
namespace tabwright::applescript {

/// From the loosest to the tightest, as the language is published. Signs in front of an operand bind tighter than all
/// of these; `not` has no row, since it stands in front.
enum class Precedence : std::uint8_t {
  lowest,
  logicalOr,
  logicalAnd,
  logicalNot,
  equality,
  comparison,
  coercion,
  concatenation,
  addition,
  multiplication,
  power,
};

/// One way to write an operator: a sign, or words in a row. An operator has as many rows as it has spellings.
struct OperatorRow {
  /// All but `binary` stand behind their operand: `as` takes a type, the others nothing. `existence` is `x exists`,
  /// `running` is `x is running`; the other two deny them.
  enum class Form : std::uint8_t { binary, coercion, existence, nonexistence, running, notRunning };
  Form form = Form::binary;
  Binary::Operator op = {}; ///< Form::binary
  /// The same in all rows of an operator.
  Precedence precedence = Precedence::lowest;
  /// Symbol::none for an operator of words, whose `words` are set instead.
  Symbol symbol = Symbol::none;
  std::array<Keyword, 8> words = {}; ///< filled up with Keyword::none
};

/// An operator's sign or words as they are printed: the one spelling that the printer uses for all. Static storage.
[[nodiscard]] std::string_view sourceForm(Binary::Operator op);

/// The calculation of an operator that calculates; nothing for all others (`&`, comparisons, `and`, `or`).
[[nodiscard]] const std::optional<Arithmetic>& arithmeticOf(Binary::Operator op);

/// An operator that compares: the comparison that a `whose` makes of it, and whether that is denied. An object
/// specifier has no negated tests, so `is not` is `equals` under a `not`.
struct Comparison {
  TestOperator test = TestOperator::equals;
  bool isDenied = false;
};
/// Nothing for an operator that doesn't compare.
[[nodiscard]] const std::optional<Comparison>& comparisonOf(Binary::Operator op);

/// The longest row that the tokens begin with, and how many tokens it takes; null when they begin with none. `isn't`
/// and `doesn't` are one token for two words of a row.
struct OperatorMatch {
  const OperatorRow* row = nullptr;
  std::size_t tokens = 0;
};
/// `is running` asks for the state of one thing only; behind a computation it is `is` and a name.
enum class OperatorRows { all, withoutStates };
/// `tokens` must not be empty. Looks at the words alone: whether an operator may stand there, the parser decides.
[[nodiscard]] OperatorMatch matchOperator(std::span<const Token> tokens, OperatorRows which = OperatorRows::all);

} // namespace tabwright::applescript
