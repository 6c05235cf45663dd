#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tabwright::applescript {

/// Words that the grammar itself knows.
///
/// A reserved word can't name anything unless it stands in bars (`|error|`). The others have a meaning in certain
/// places only (`index` behind a class, `seconds` behind `with timeout of n`) and are ordinary names elsewhere.
// clang-format off: many words a line
enum class Keyword : std::uint8_t {
  none,
  // Reserved.
  about, above, after, against, and_, apart, around, as, aside, at, back, before, beginning, behind, below, beneath,
  beside, between, but, by, considering, contain, contains, continue_, copy, div, does, doesnt, eighth, else_, end, equal,
  equals, error, every, exit, false_, fifth, first, for_, fourth, from, front, get, given, global, if_, ignoring, in,
  instead, into, is, isnt, it, its, last, local, me, middle, mod, my, ninth, not_, of, on, onto, or_, out, over, prop,
  property, put, ref, reference, repeat, return_, script, second, set, seventh, since, sixth, some, tell, tenth, that, the,
  then, third, through, thru, timeout, times, to, transaction, true_, try_, until, where, while_, whose, with, without,
  // With a meaning in certain places only.
  a, additions, app, appleScript, application, begin, begins, come, comes, contained, current, diacriticals, ends, exist,
  exists, expansion, framework, greater, hyphens, id, importing, index, less, named, number, numeric, partial,
  punctuation, responses, result, running, scripting, seconds, space, start, starts, strings, terms, textCase, than, use,
  using_, version, white,
  count_ ///< how many there are
};
// clang-format on

/// A keyword and its spelling. Its place in Keyword tells whether it is reserved: `isReserved`.
struct KeywordRow {
  Keyword keyword = Keyword::none;
  /// Lower case, but for `AppleScript`; empty for Keyword::none.
  std::string_view word;
};

/// In the order of Keyword, checked below at compile time: `spelling` takes a keyword's number for its row.
// clang-format off: many words a line
inline constexpr auto keywordTable = std::to_array<KeywordRow>({
    {Keyword::none, ""},
    {Keyword::about, "about"}, {Keyword::above, "above"}, {Keyword::after, "after"}, {Keyword::against, "against"},
    {Keyword::and_, "and"}, {Keyword::apart, "apart"}, {Keyword::around, "around"}, {Keyword::as, "as"},
    {Keyword::aside, "aside"}, {Keyword::at, "at"}, {Keyword::back, "back"}, {Keyword::before, "before"},
    {Keyword::beginning, "beginning"}, {Keyword::behind, "behind"}, {Keyword::below, "below"},
    {Keyword::beneath, "beneath"}, {Keyword::beside, "beside"}, {Keyword::between, "between"}, {Keyword::but, "but"},
    {Keyword::by, "by"}, {Keyword::considering, "considering"}, {Keyword::contain, "contain"},
    {Keyword::contains, "contains"}, {Keyword::continue_, "continue"}, {Keyword::copy, "copy"}, {Keyword::div, "div"},
    {Keyword::does, "does"}, {Keyword::doesnt, "doesn't"}, {Keyword::eighth, "eighth"}, {Keyword::else_, "else"},
    {Keyword::end, "end"}, {Keyword::equal, "equal"}, {Keyword::equals, "equals"}, {Keyword::error, "error"},
    {Keyword::every, "every"}, {Keyword::exit, "exit"}, {Keyword::false_, "false"}, {Keyword::fifth, "fifth"},
    {Keyword::first, "first"}, {Keyword::for_, "for"}, {Keyword::fourth, "fourth"}, {Keyword::from, "from"},
    {Keyword::front, "front"}, {Keyword::get, "get"}, {Keyword::given, "given"}, {Keyword::global, "global"},
    {Keyword::if_, "if"}, {Keyword::ignoring, "ignoring"}, {Keyword::in, "in"}, {Keyword::instead, "instead"},
    {Keyword::into, "into"}, {Keyword::is, "is"}, {Keyword::isnt, "isn't"}, {Keyword::it, "it"}, {Keyword::its, "its"},
    {Keyword::last, "last"}, {Keyword::local, "local"}, {Keyword::me, "me"}, {Keyword::middle, "middle"},
    {Keyword::mod, "mod"}, {Keyword::my, "my"}, {Keyword::ninth, "ninth"}, {Keyword::not_, "not"}, {Keyword::of, "of"},
    {Keyword::on, "on"}, {Keyword::onto, "onto"}, {Keyword::or_, "or"}, {Keyword::out, "out"}, {Keyword::over, "over"},
    {Keyword::prop, "prop"}, {Keyword::property, "property"}, {Keyword::put, "put"}, {Keyword::ref, "ref"},
    {Keyword::reference, "reference"}, {Keyword::repeat, "repeat"}, {Keyword::return_, "return"},
    {Keyword::script, "script"}, {Keyword::second, "second"}, {Keyword::set, "set"}, {Keyword::seventh, "seventh"},
    {Keyword::since, "since"}, {Keyword::sixth, "sixth"}, {Keyword::some, "some"}, {Keyword::tell, "tell"},
    {Keyword::tenth, "tenth"}, {Keyword::that, "that"}, {Keyword::the, "the"}, {Keyword::then, "then"},
    {Keyword::third, "third"}, {Keyword::through, "through"}, {Keyword::thru, "thru"}, {Keyword::timeout, "timeout"},
    {Keyword::times, "times"}, {Keyword::to, "to"}, {Keyword::transaction, "transaction"}, {Keyword::true_, "true"},
    {Keyword::try_, "try"}, {Keyword::until, "until"}, {Keyword::where, "where"}, {Keyword::while_, "while"},
    {Keyword::whose, "whose"}, {Keyword::with, "with"}, {Keyword::without, "without"},
    {Keyword::a, "a"}, {Keyword::additions, "additions"}, {Keyword::app, "app"}, {Keyword::appleScript, "AppleScript"},
    {Keyword::application, "application"}, {Keyword::begin, "begin"}, {Keyword::begins, "begins"},
    {Keyword::come, "come"}, {Keyword::comes, "comes"}, {Keyword::contained, "contained"}, {Keyword::current, "current"},
    {Keyword::diacriticals, "diacriticals"}, {Keyword::ends, "ends"}, {Keyword::exist, "exist"},
    {Keyword::exists, "exists"}, {Keyword::expansion, "expansion"}, {Keyword::framework, "framework"},
    {Keyword::greater, "greater"}, {Keyword::hyphens, "hyphens"}, {Keyword::id, "id"}, {Keyword::importing, "importing"},
    {Keyword::index, "index"}, {Keyword::less, "less"}, {Keyword::named, "named"}, {Keyword::number, "number"},
    {Keyword::numeric, "numeric"}, {Keyword::partial, "partial"}, {Keyword::punctuation, "punctuation"},
    {Keyword::responses, "responses"}, {Keyword::result, "result"}, {Keyword::running, "running"},
    {Keyword::scripting, "scripting"}, {Keyword::seconds, "seconds"}, {Keyword::space, "space"},
    {Keyword::start, "start"}, {Keyword::starts, "starts"}, {Keyword::strings, "strings"}, {Keyword::terms, "terms"},
    {Keyword::textCase, "case"}, {Keyword::than, "than"}, {Keyword::use, "use"}, {Keyword::using_, "using"},
    {Keyword::version, "version"}, {Keyword::white, "white"},
});
// clang-format on

namespace detail {
consteval bool keywordsAreInOrder() {
  for (std::size_t i = 0; i < keywordTable.size(); ++i) {
    if (keywordTable[i].keyword != static_cast<Keyword>(i))
      return false;
  }
  return true;
}
} // namespace detail
static_assert(keywordTable.size() == static_cast<std::size_t>(Keyword::count_) && detail::keywordsAreInOrder());

/// A word that names nothing unless it stands in bars. Keyword::a is the first that isn't reserved.
[[nodiscard]] constexpr bool isReserved(Keyword keyword) {
  return keyword != Keyword::none && keyword < Keyword::a;
}
/// The word as messages and the printer write it; empty for Keyword::none.
[[nodiscard]] constexpr std::string_view spelling(Keyword keyword) {
  return keywordTable[static_cast<std::size_t>(keyword)].word;
}

/// The keyword that a word is, ignoring the case of ASCII letters, or Keyword::none. `isn't` and `doesn't` are written
/// with the plain apostrophe here: the lexer puts them together itself, with either apostrophe. Takes constant time.
[[nodiscard]] Keyword findKeyword(std::string_view word);

} // namespace tabwright::applescript
