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

/// The operators of the language: how tightly each binds, and in how many ways it may be written.
namespace tabwright::applescript {

/// From the loosest to the tightest.
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

/// One way to write an operator: a sign, or words in a row.
struct OperatorRow {
  /// All but `binary` stand behind their operand: `as` takes a type, the others nothing.
  enum class Form : std::uint8_t { binary, coercion, existence, nonexistence, running, notRunning };
  Form form = Form::binary;
  Binary::Operator op = {}; ///< Form::binary
  Precedence precedence = Precedence::lowest;
  Symbol symbol = Symbol::none;
  std::array<Keyword, 8> words = {}; ///< filled up with Keyword::none
};

/// An operator's sign or words as they are printed.
[[nodiscard]] std::string_view sourceForm(Binary::Operator op);

/// The calculation of an operator that calculates.
[[nodiscard]] const std::optional<Arithmetic>& arithmeticOf(Binary::Operator op);

/// An operator that compares: the comparison that a `whose` makes of it, and whether that is denied.
struct Comparison {
  TestOperator test = TestOperator::equals;
  bool isDenied = false;
};
[[nodiscard]] const std::optional<Comparison>& comparisonOf(Binary::Operator op);

/// The longest row that the tokens begin with, and how many tokens it takes; null when they begin with none.
struct OperatorMatch {
  const OperatorRow* row = nullptr;
  std::size_t tokens = 0;
};
/// `is running` asks for the state of one thing only; behind a computation it is `is` and a name.
enum class OperatorRows { all, withoutStates };
[[nodiscard]] OperatorMatch matchOperator(std::span<const Token> tokens, OperatorRows which = OperatorRows::all);

} // namespace tabwright::applescript
