// The words of the grammar: what each begins, a row per word. Where a word may begin several things, or one only with
// others behind it, its function looks further and answers null for none; the word then is a name, or a mistake.
#include "applescript/syntax/ScriptParser.h"

#include <array>

namespace tabwright::applescript {

const ScriptParser::WordRule& ScriptParser::ruleFor(Keyword word) {
  using K = Keyword;
  using P = ScriptParser;
  using E = ExpressionPointer;
  using Form = ElementAccess::Form;
  using Where = InsertionPoint::Where;
  constexpr auto always = Argument::always;
  constexpr auto beforeOf = Argument::beforeOf;
  constexpr auto asTerm = Argument::asTerm;
  static constexpr auto rows = std::to_array<WordRule>({
      // Values
      {K::true_, always, [](P& p) { return p.makeLiteral(Value(true), 1); }},
      {K::false_, always, [](P& p) { return p.makeLiteral(Value(false), 1); }},
      {K::return_, always, [](P& p) { return p.makeLiteral(Value("\r"), 1, "return"); }, &P::parseReturn},
      {K::me, always, [](P& p) { return p.parseSimple(Expression::Kind::me, 1); }},
      {K::it, always, [](P& p) { return p.parseSimple(Expression::Kind::it, 1); }},
      {K::my, always, [](P& p) { return p.parseMemberOf(Expression::Kind::me); }},
      {K::its, always, [](P& p) { return p.parseMemberOf(Expression::Kind::it); }},
      {K::the, always, [](P& p) { return p.parseThe(); }},
      {K::not_, always, nullptr}, // in front of a whole comparison: parseOperand
      {K::get, always, [](P& p) { return p.parseCommand(*languageTerminology().findCommand(events::get), 1); }},
      {K::ref, always, [](P& p) { return p.token(1).is(K::to) ? p.parseReferenceTo(2) : E(); }},
      {K::reference, always,
       [](P& p) {
         return p.token(1).is(K::to) ? p.parseReferenceTo(2)
                                     : p.makeLiteral(Value(ClassName{fourCharCode("obj "), "reference"}), 1);
       }},
      {K::a, asTerm,
       [](P& p) {
         const bool isReference = p.token(1).is(K::reference) || p.token(1).is(K::ref);
         return isReference && p.token(2).is(K::to) ? p.parseReferenceTo(3) : E();
       }},
      {K::application, asTerm, [](P& p) { return p.parseApplication(); }},
      {K::app, asTerm, [](P& p) { return p.parseApplication(); }},
      {K::current, asTerm,
       [](P& p) {
         return p.token(1).is(K::application) ? p.parseSimple(Expression::Kind::currentApplication, 2) : E();
       }},
      {K::number, asTerm, [](P& p) { return p.token(1).is(K::of) ? p.parseCount(1) : E(); }}, // like `count of`

      // Elements
      {K::every, always, [](P& p) { return p.parseEvery(); }},
      {K::some, always, [](P& p) { return p.parsePicked(Form::some); }},
      {K::middle, always, [](P& p) { return p.parsePicked(Form::middle); }},
      {K::last, always, [](P& p) { return p.parsePicked(Form::last); }},
      {K::first, always, [](P& p) { return p.parsePicked(Form::first); }},
      {K::second, always, [](P& p) { return p.parseOrdinal(2); }},
      {K::third, always, [](P& p) { return p.parseOrdinal(3); }},
      {K::fourth, always, [](P& p) { return p.parseOrdinal(4); }},
      {K::fifth, always, [](P& p) { return p.parseOrdinal(5); }},
      {K::sixth, always, [](P& p) { return p.parseOrdinal(6); }},
      {K::seventh, always, [](P& p) { return p.parseOrdinal(7); }},
      {K::eighth, always, [](P& p) { return p.parseOrdinal(8); }},
      {K::ninth, always, [](P& p) { return p.parseOrdinal(9); }},
      {K::tenth, always, [](P& p) { return p.parseOrdinal(10); }},
      {K::script, asTerm,
       [](P& p) { return p.parseElement({{fourCharCode("scpt"), "script"}, false}, p.consumeOne()); }, &P::parseScript},

      // Places. `beginning` and `end` stand alone only where a place is asked for: see parseArgumentValue, parseKey
      {K::back, always,
       [](P& p) { return p.token(1).is(K::of) ? p.parseInsertionPoint(Where::end, 1) : p.parsePicked(Form::last); }},
      {K::front, always,
       [](P& p) {
         return p.token(1).is(K::of) ? p.parseInsertionPoint(Where::beginning, 1) : p.parsePicked(Form::first);
       }},
      {K::beginning, beforeOf,
       [](P& p) {
         return p.token(1).is(K::of) || p.token(1).is(K::in) ? p.parseInsertionPoint(Where::beginning, 1) : E();
       }},
      {K::end, beforeOf,
       [](P& p) { return p.token(1).is(K::of) || p.token(1).is(K::in) ? p.parseInsertionPoint(Where::end, 1) : E(); }},
      {K::before, asTerm, [](P& p) { return p.parseInsertionPoint(Where::before, 1); }},
      {K::after, asTerm, [](P& p) { return p.parseInsertionPoint(Where::after, 1); }},
      {K::behind, asTerm, [](P& p) { return p.parseInsertionPoint(Where::after, 1); }},
      {K::in, asTerm,
       [](P& p) {
         if (!p.token(2).is(K::of) || !(p.token(1).is(K::front) || p.token(1).is(K::back)))
           return E();
         return p.parseInsertionPoint(p.token(1).is(K::front) ? Where::before : Where::after, 3);
       }},

      // Statements
      {K::if_, asTerm, nullptr, &P::parseIf},
      {K::repeat, asTerm, nullptr, &P::parseRepeat},
      {K::tell, asTerm, nullptr, &P::parseTell},
      {K::try_, asTerm, nullptr, &P::parseTry},
      {K::considering, asTerm, nullptr, &P::parseConsidering},
      {K::ignoring, asTerm, nullptr, &P::parseConsidering},
      {K::with, asTerm, nullptr, &P::parseWith},
      {K::using_, asTerm, nullptr, &P::parseUsingTerms},
      {K::set, asTerm, nullptr, &P::parseSet},
      {K::copy, asTerm, nullptr, &P::parseCopy},
      {K::error, asTerm, nullptr, &P::parseError},
      {K::exit, asTerm, nullptr, &P::parseExit},
      {K::continue_, asTerm, nullptr, &P::parseContinue},
      {K::global, asTerm, nullptr, &P::parseDeclaration},
      {K::local, asTerm, nullptr, &P::parseDeclaration},
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
