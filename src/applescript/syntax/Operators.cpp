#include "applescript/syntax/Operators.h"

#include "applescript/values/SourceForm.h"

#include <algorithm>

// One row per spelling, but for `isn't` and `doesn't`, which are read as the two words that they stand for. A row is
// found by its first word; among rows with the same first word the longest that fits wins, which is why the table needs
// no order.
namespace tabwright::applescript {

namespace {

using enum Binary::Operator;
using K = Keyword;

// The three kinds of rows: a sign between two operands, words between two operands, words behind one.
constexpr OperatorRow sign(Binary::Operator op, Precedence precedence, Symbol symbol) {
  return {OperatorRow::Form::binary, op, precedence, symbol, {}};
}
constexpr OperatorRow words(Binary::Operator op, Precedence precedence, std::array<Keyword, 8> words) {
  return {OperatorRow::Form::binary, op, precedence, Symbol::none, words};
}
constexpr OperatorRow suffix(OperatorRow::Form form, Precedence precedence, std::array<Keyword, 8> words) {
  return {form, {}, precedence, Symbol::none, words};
}

constexpr auto rows = std::to_array<OperatorRow>({
    words(logicalOr, Precedence::logicalOr, {K::or_}),
    words(logicalAnd, Precedence::logicalAnd, {K::and_}),

    sign(equal, Precedence::equality, Symbol::equal),
    words(equal, Precedence::equality, {K::is}),
    words(equal, Precedence::equality, {K::equals}),
    words(equal, Precedence::equality, {K::equal}),
    words(equal, Precedence::equality, {K::equal, K::to}),
    words(equal, Precedence::equality, {K::is, K::equal}),
    words(equal, Precedence::equality, {K::is, K::equal, K::to}),
    sign(notEqual, Precedence::equality, Symbol::notEqual),
    words(notEqual, Precedence::equality, {K::is, K::not_}),
    words(notEqual, Precedence::equality, {K::is, K::not_, K::equal}),
    words(notEqual, Precedence::equality, {K::is, K::not_, K::equal, K::to}),
    words(notEqual, Precedence::equality, {K::does, K::not_, K::equal}),

    sign(less, Precedence::comparison, Symbol::less),
    words(less, Precedence::comparison, {K::less, K::than}),
    words(less, Precedence::comparison, {K::is, K::less, K::than}),
    words(less, Precedence::comparison, {K::comes, K::before}),
    words(less, Precedence::comparison, {K::is, K::not_, K::greater, K::than, K::or_, K::equal}),
    words(less, Precedence::comparison, {K::is, K::not_, K::greater, K::than, K::or_, K::equal, K::to}),

    sign(greater, Precedence::comparison, Symbol::greater),
    words(greater, Precedence::comparison, {K::greater, K::than}),
    words(greater, Precedence::comparison, {K::is, K::greater, K::than}),
    words(greater, Precedence::comparison, {K::comes, K::after}),
    words(greater, Precedence::comparison, {K::is, K::not_, K::less, K::than, K::or_, K::equal}),
    words(greater, Precedence::comparison, {K::is, K::not_, K::less, K::than, K::or_, K::equal, K::to}),

    sign(lessOrEqual, Precedence::comparison, Symbol::lessOrEqual),
    words(lessOrEqual, Precedence::comparison, {K::less, K::than, K::or_, K::equal}),
    words(lessOrEqual, Precedence::comparison, {K::less, K::than, K::or_, K::equal, K::to}),
    words(lessOrEqual, Precedence::comparison, {K::is, K::less, K::than, K::or_, K::equal}),
    words(lessOrEqual, Precedence::comparison, {K::is, K::less, K::than, K::or_, K::equal, K::to}),
    words(lessOrEqual, Precedence::comparison, {K::is, K::not_, K::greater, K::than}),
    words(lessOrEqual, Precedence::comparison, {K::does, K::not_, K::come, K::after}),

    sign(greaterOrEqual, Precedence::comparison, Symbol::greaterOrEqual),
    words(greaterOrEqual, Precedence::comparison, {K::greater, K::than, K::or_, K::equal}),
    words(greaterOrEqual, Precedence::comparison, {K::greater, K::than, K::or_, K::equal, K::to}),
    words(greaterOrEqual, Precedence::comparison, {K::is, K::greater, K::than, K::or_, K::equal}),
    words(greaterOrEqual, Precedence::comparison, {K::is, K::greater, K::than, K::or_, K::equal, K::to}),
    words(greaterOrEqual, Precedence::comparison, {K::is, K::not_, K::less, K::than}),
    words(greaterOrEqual, Precedence::comparison, {K::does, K::not_, K::come, K::before}),

    words(contains, Precedence::comparison, {K::contains}),
    words(contains, Precedence::comparison, {K::contain}),
    words(doesNotContain, Precedence::comparison, {K::does, K::not_, K::contain}),
    words(isIn, Precedence::comparison, {K::is, K::in}),
    words(isIn, Precedence::comparison, {K::is, K::contained, K::by}),
    words(isNotIn, Precedence::comparison, {K::is, K::not_, K::in}),
    words(isNotIn, Precedence::comparison, {K::is, K::not_, K::contained, K::by}),
    words(beginsWith, Precedence::comparison, {K::begins, K::with}),
    words(beginsWith, Precedence::comparison, {K::begin, K::with}),
    words(beginsWith, Precedence::comparison, {K::starts, K::with}),
    words(beginsWith, Precedence::comparison, {K::start, K::with}),
    words(endsWith, Precedence::comparison, {K::ends, K::with}),
    words(endsWith, Precedence::comparison, {K::end, K::with}),

    sign(concatenate, Precedence::concatenation, Symbol::ampersand),
    sign(add, Precedence::addition, Symbol::plus),
    sign(subtract, Precedence::addition, Symbol::minus),
    sign(multiply, Precedence::multiplication, Symbol::times),
    sign(divide, Precedence::multiplication, Symbol::divide),
    words(integerDivide, Precedence::multiplication, {K::div}),
    words(modulo, Precedence::multiplication, {K::mod}),
    sign(power, Precedence::power, Symbol::power),

    suffix(OperatorRow::Form::coercion, Precedence::coercion, {K::as}),
    suffix(OperatorRow::Form::existence, Precedence::equality, {K::exists}),
    suffix(OperatorRow::Form::existence, Precedence::equality, {K::exist}),
    suffix(OperatorRow::Form::nonexistence, Precedence::equality, {K::does, K::not_, K::exist}),
    suffix(OperatorRow::Form::nonexistence, Precedence::equality, {K::does, K::not_, K::exists}),
    suffix(OperatorRow::Form::running, Precedence::equality, {K::is, K::running}),
    suffix(OperatorRow::Form::notRunning, Precedence::equality, {K::is, K::not_, K::running}),
});

/// The words that a token stands for: two for `isn't` and `doesn't`.
std::pair<Keyword, Keyword> wordsOf(const Token& token) {
  if (token.is(K::isnt))
    return {K::is, K::not_};
  if (token.is(K::doesnt))
    return {K::does, K::not_};
  return {token.kind == Token::Kind::word ? token.keyword : K::none, K::none};
}

/// The number of tokens that the row's words take, or 0 when they don't stand there.
std::size_t matchWords(const OperatorRow& row, std::span<const Token> tokens) {
  std::size_t count = 0;
  for (std::size_t word = 0; word < row.words.size() && row.words[word] != K::none; ++word, ++count) {
    if (count == tokens.size())
      return 0;
    const auto [first, second] = wordsOf(tokens[count]);
    if (first != row.words[word] || (second != K::none && row.words[++word] != second))
      return 0;
  }
  return count;
}

} // namespace

OperatorMatch matchOperator(std::span<const Token> tokens, OperatorRows which) {
  OperatorMatch best;
  const Token& first = tokens.front();
  if (first.kind == Token::Kind::symbol) {
    const auto row = std::ranges::find(rows, first.symbol, &OperatorRow::symbol);
    return row == rows.end() ? best : OperatorMatch{&*row, 1};
  }
  // Names and dictionaries' words are no keywords, so nearly all of them end here.
  const Keyword firstWord = wordsOf(first).first;
  if (firstWord == K::none)
    return best;
  for (const OperatorRow& row : rows) {
    if (row.words.front() != firstWord)
      continue;
    const bool isState = row.form == OperatorRow::Form::running || row.form == OperatorRow::Form::notRunning;
    if (isState && which == OperatorRows::withoutStates)
      continue;
    if (const std::size_t count = matchWords(row, tokens); count > best.tokens)
      best = {&row, count};
  }
  return best;
}

namespace {

struct OperatorMeaning {
  Binary::Operator op;
  std::string_view words; ///< as printed
  std::optional<Comparison> comparison = {};
  std::optional<Arithmetic> arithmetic = {};
};

constexpr OperatorMeaning compares(Binary::Operator op, TestOperator test) {
  return {op, sourceForm(test), Comparison{test, false}};
}

/// In the order of Binary::Operator, which indexes it. Comparisons are printed in the words that the source form of
/// specifiers has for them; the denied ones have words of their own.
constexpr auto meanings = std::to_array<OperatorMeaning>({
    {add, "+", {}, Arithmetic::add},
    {subtract, "-", {}, Arithmetic::subtract},
    {multiply, "*", {}, Arithmetic::multiply},
    {divide, "/", {}, Arithmetic::divide},
    {integerDivide, "div", {}, Arithmetic::integerDivide},
    {modulo, "mod", {}, Arithmetic::modulo},
    {power, "^", {}, Arithmetic::power},
    {concatenate, "&"},
    compares(equal, TestOperator::equals),
    {notEqual, "is not", Comparison{TestOperator::equals, true}},
    compares(less, TestOperator::lessThan),
    compares(lessOrEqual, TestOperator::atMost),
    compares(greater, TestOperator::greaterThan),
    compares(greaterOrEqual, TestOperator::atLeast),
    compares(contains, TestOperator::contains),
    {doesNotContain, "does not contain", Comparison{TestOperator::contains, true}},
    compares(isIn, TestOperator::isContainedBy),
    {isNotIn, "is not in", Comparison{TestOperator::isContainedBy, true}},
    compares(beginsWith, TestOperator::beginsWith),
    compares(endsWith, TestOperator::endsWith),
    {logicalAnd, "and"},
    {logicalOr, "or"},
});
static_assert([] {
  for (std::size_t index = 0; index < meanings.size(); ++index) {
    if (meanings[index].op != static_cast<Binary::Operator>(index))
      return false;
  }
  return meanings.back().op == logicalOr;
}());

} // namespace

std::string_view sourceForm(Binary::Operator op) {
  return meanings[static_cast<std::size_t>(op)].words;
}

const std::optional<Arithmetic>& arithmeticOf(Binary::Operator op) {
  return meanings[static_cast<std::size_t>(op)].arithmetic;
}

const std::optional<Comparison>& comparisonOf(Binary::Operator op) {
  return meanings[static_cast<std::size_t>(op)].comparison;
}

} // namespace tabwright::applescript
