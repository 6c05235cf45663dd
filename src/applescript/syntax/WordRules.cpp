// The words of the grammar: what each begins, a row per word. Where a word may begin several things, or one only with
// others behind it, its function looks further and answers null for none; the word then is a name, or a mistake.
#include "applescript/syntax/WordRules.h"

#include "applescript/syntax/ParseCommands.h"
#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseReferences.h"
#include "applescript/syntax/ParseStatements.h"

#include <array>

namespace tabwright::applescript {

namespace {

template <class Node>
ExpressionPointer parseWords(ScriptParser& p, std::size_t words) {
  const std::size_t start = p.offset();
  p.advance(words);
  return p.finish(std::make_unique<Node>(), start);
}

} // namespace

const WordRule& ruleFor(Keyword word) {
  using K = Keyword;
  using P = ScriptParser;
  using E = ExpressionPointer;
  using Form = ElementAccess::Form;
  constexpr auto always = WordRule::Argument::always;
  constexpr auto beforeOf = WordRule::Argument::beforeOf;
  constexpr auto asTerm = WordRule::Argument::asTerm;
  static constexpr auto rows = std::to_array<WordRule>({
      // Values
      {K::true_, always, [](P& p) { return makeLiteral(p, Value(true), 1); }},
      {K::false_, always, [](P& p) { return makeLiteral(p, Value(false), 1); }},
      {K::return_, always, [](P& p) { return makeLiteral(p, Value("\r"), 1, "return"); }, parseReturn},
      {K::me, always, [](P& p) { return parseWords<Me>(p, 1); }},
      {K::it, always, [](P& p) { return parseWords<It>(p, 1); }},
      {K::my, always, [](P& p) { return parseMemberOf(p, Expression::Kind::me); }},
      {K::its, always, [](P& p) { return parseMemberOf(p, Expression::Kind::it); }},
      {K::the, always, parseThe},
      {K::not_, always, nullptr}, // in front of a whole comparison: parseOperand
      {K::get, always, [](P& p) { return parseCommand(p, *languageTerminology().findCommand(events::get), 1); }},
      {K::ref, always, [](P& p) { return p.token(1).is(K::to) ? parseReferenceTo(p, 2) : E(); }},
      {K::reference, always,
       [](P& p) {
         return p.token(1).is(K::to) ? parseReferenceTo(p, 2)
                                     : makeLiteral(p, Value(ClassName{fourCharCode("obj "), "reference"}), 1);
       }},
      {K::a, asTerm,
       [](P& p) {
         // `a` alone is an ordinary name.
         const bool isReference = p.token(1).is(K::reference) || p.token(1).is(K::ref);
         return isReference && p.token(2).is(K::to) ? parseReferenceTo(p, 3) : E();
       }},
      {K::application, asTerm, parseApplication},
      {K::app, asTerm, parseApplication},
      {K::current, asTerm,
       [](P& p) {
         return p.token(1).is(K::application) ? parseWords<CurrentApplication>(p, 2) : E();
       }},
      {K::number, asTerm, [](P& p) { return p.token(1).is(K::of) ? parseCount(p, 1) : E(); }}, // like `count of`

      // Elements
      {K::every, always, parseEvery},
      {K::some, always, [](P& p) { return parsePicked(p, Form::some); }},
      {K::middle, always, [](P& p) { return parsePicked(p, Form::middle); }},
      {K::last, always, [](P& p) { return parseOrdinal(p, -1); }},
      {K::first, always, [](P& p) { return parseOrdinal(p, 1); }},
      {K::second, always, [](P& p) { return parseOrdinal(p, 2); }},
      {K::third, always, [](P& p) { return parseOrdinal(p, 3); }},
      {K::fourth, always, [](P& p) { return parseOrdinal(p, 4); }},
      {K::fifth, always, [](P& p) { return parseOrdinal(p, 5); }},
      {K::sixth, always, [](P& p) { return parseOrdinal(p, 6); }},
      {K::seventh, always, [](P& p) { return parseOrdinal(p, 7); }},
      {K::eighth, always, [](P& p) { return parseOrdinal(p, 8); }},
      {K::ninth, always, [](P& p) { return parseOrdinal(p, 9); }},
      {K::tenth, always, [](P& p) { return parseOrdinal(p, 10); }},
      {K::script, asTerm,
       [](P& p) {
         const std::size_t start = p.offset();
         p.advance();
         return parseElement(p, {{fourCharCode("scpt"), "script"}, false}, start);
       },
       parseScript},

      // Places. `beginning` and `end` stand alone only where a place is asked for: see parseArgumentValue, parseKey
      {K::back, always,
       [](P& p) { return p.token(1).is(K::of) ? parseInsertionPoint(p, Form::end, 1) : parseOrdinal(p, -1); }},
      {K::front, always,
       [](P& p) {
         return p.token(1).is(K::of) ? parseInsertionPoint(p, Form::beginning, 1) : parseOrdinal(p, 1);
       }},
      {K::beginning, beforeOf,
       [](P& p) {
         return p.token(1).is(K::of) || p.token(1).is(K::in) ? parseInsertionPoint(p, Form::beginning, 1) : E();
       }},
      {K::end, beforeOf,
       [](P& p) { return p.token(1).is(K::of) || p.token(1).is(K::in) ? parseInsertionPoint(p, Form::end, 1) : E(); }},
      {K::before, asTerm, [](P& p) { return parseInsertionPoint(p, Form::before, 1); }},
      {K::after, asTerm, [](P& p) { return parseInsertionPoint(p, Form::after, 1); }},
      {K::behind, asTerm, [](P& p) { return parseInsertionPoint(p, Form::after, 1); }},
      {K::in, asTerm,
       [](P& p) {
         if (!p.token(2).is(K::of) || !(p.token(1).is(K::front) || p.token(1).is(K::back)))
           return E();
         return parseInsertionPoint(p, p.token(1).is(K::front) ? Form::before : Form::after, 3);
       }},

      // Statements
      {K::if_, asTerm, nullptr, parseIf},
      {K::repeat, asTerm, nullptr, parseRepeat},
      {K::tell, asTerm, nullptr, parseTell},
      {K::try_, asTerm, nullptr, parseTry},
      {K::considering, asTerm, nullptr, parseConsidering},
      {K::ignoring, asTerm, nullptr, parseConsidering},
      {K::with, asTerm, nullptr, parseWith},
      {K::using_, asTerm, nullptr, parseUsingTerms},
      {K::set, asTerm, nullptr, parseSet},
      {K::copy, asTerm, nullptr, parseCopy},
      {K::error, asTerm, nullptr, parseError},
      {K::exit, asTerm, nullptr, parseExit},
      {K::continue_, asTerm, nullptr, parseContinue},
      {K::global, asTerm, nullptr, parseDeclaration},
      {K::local, asTerm, nullptr, parseDeclaration},
  });
  // By keyword; those without a row begin nothing.
  static constexpr auto byWord = [] {
    std::array<WordRule, static_cast<std::size_t>(K::count_)> index{};
    for (const WordRule& row : rows)
      index[static_cast<std::size_t>(row.word)] = row;
    return index;
  }();
  return byWord[static_cast<std::size_t>(word)];
}

} // namespace tabwright::applescript
