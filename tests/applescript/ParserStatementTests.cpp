#include "applescript/ParserTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace tabwright::applescript::test {
namespace {

void expectTrees(const std::vector<ParserCase>& cases) {
  for (const ParserCase& each : cases)
    EXPECT_EQ(parsed(each.source), each.expected) << each.source;
}

TEST(ParserStatements, Assign) {
  expectTrees({
      {"set x to 1", "set x := 1"},
      {"set {a, {b}} to c", "set (list a (list b)) := c"},
      {"set {x:a, name:b} to r", "set (record x:a name'pnam':b) := r"},
      {"set end of tabsList of r to v", "set (place end of (property tabsList of r)) := v"},
      {"set xs's end to v", "set (place end of xs) := v"},
      {"set item i of xs to v", "set (index item'cobj' at i of xs) := v"},
      {"set text item delimiters to \",\"", "set (property text item delimiters'txdl') := \",\""},
      {"copy x to {a, b}", "copy (list a b) := x"},
      {"global a, b\nlocal c", "global a b\nlocal c"},
  });
}

TEST(ParserStatements, Branch) {
  expectTrees({
      {"if a then\nb\nelse if c then\nd\nelse\ne\nend if", "if a\n  b\nelse-if c\n  d\nelse\n  e"},
      {"if a is in xs\nb\nend", "if (is-in a xs)\n  b"},
      {"if x then return null", "if-then x\n  return null"},
      {"if a then b else if c then d else e", "if-then a\n  b\nelse-if c\n  d\nelse\n  e"},
      {"if a then tell b\nc\nend tell", "if-then a\n  tell b\n    c"},
  });
}

TEST(ParserStatements, Repeat) {
  expectTrees({
      {"repeat\nexit repeat\nend repeat", "repeat-forever\n  exit-repeat"},
      {"repeat n + 1 times\nend", "repeat-times (+ n 1)"},
      {"repeat while a < b\nexit\nend repeat", "repeat-while (< a b)\n  exit-repeat"},
      {"repeat until done\nend repeat", "repeat-until done"},
      {"repeat with i from 1 to count of xs by 2\nend repeat",
       "repeat-range i from 1 to (command count'corecnte' direct xs) by 2"},
      {"repeat with x in every word in t\nend repeat", "repeat-items x in (every word'cwor' of t)"},
  });
}

TEST(ParserStatements, CatchAndRaise) {
  expectTrees({
      {"try\na\nend try", "try\n  a"},
      {"try\na\non error\nb\nend", "try\n  a\non-error\n  b"},
      {"try\non error m number n from o partial result p to t\nend",
       "try\non-error message m number n from o partial p to t"},
      {"try\non error number -128\nend try", "try\non-error only -128"},
      {"error", "error"},
      {"error \"m\" number n from o partial result p to text",
       "error message \"m\" number n from o partial p to class:text'ctxt'"},
      {"error number -128", "error number -128"},
  });
}

TEST(ParserStatements, HoldOthers) {
  expectTrees({
      {"tell x to f()", "tell-to x\n  (call f)"},
      {"tell a to tell b\nc\nend tell", "tell-to a\n  tell b\n    c"},
      {"considering case, hyphens and white space but ignoring numeric strings\nend considering",
       "considering +0 +3 +5 -6"},
      {"ignoring application responses\nx\nend ignoring", "considering -7\n  x"},
      {"with timeout of 5 seconds\nx\nend timeout", "timeout 5\n  x"},
      {"with transaction\nend transaction", "transaction"},
      {"using terms from application \"Safari\"\nend using terms from", "using-terms (application \"Safari\")"},
  });
}

TEST(ParserStatements, Define) {
  expectTrees({
      {"on f(a, {b, c}) --> list\nreturn\nend executeJS", "on f a (list b c)\n  return"},
      {"on run\nend", "on run"},
      {"on run argv\nend run", "on run direct argv"},
      {"on open {a, b}\nend open", "on open direct (list a b)"},
      {"to greet(a)\nreturn a\nend greet", "on greet a\n  return a"},
      {"on f given x:y : 3, z:w\nend f", "on f labelled x:y=3 z:w"},
      {"on a:b c:d\nend a:c:", "on a:c: b d"},
      {"property p : {1}\nprop name : 2", "property p := (list 1)\nproperty name'pnam' := 2"},
      {"script S\nproperty p : 1\non f()\ncontinue f()\nend f\nend script",
       "script S\n  property p := 1\n  on f\n    continue (call f)"},
      {"on f()\nscript\non g()\nend g\nend script\nend f", "on f\n  script \n    on g"},
      {"use AppleScript version \"2.4\"\nuse scripting additions\nuse framework \"Foundation\"",
       "use 0 \"\" version \"2.4\"\nuse 1 \"\"\nuse 2 \"Foundation\""},
      {"use S : application id \"com.apple.safari\" without importing",
       "use 3 \"com.apple.safari\" id as S without-importing"},
  });
}

TEST(ParserStatements, KeepTheSpellingThatCameFirst) {
  expectTrees({
      {"on f(newUrl)\nreturn NEWURL\nend f", "on f newUrl\n  return newUrl"},
      {"set x to {tabID:1}\ntabid of x", "set x := (record tabID:1)\n(property tabID of x)"},
      {"set Größe to 1\nGRÖSSE2 & gröSSe & |grösse|", "set Größe := 1\n(& (& GRÖSSE2 Größe) Größe)"},
  });
}

TEST(ParserStatements, EndAtAnyKindOfLineEnd) {
  EXPECT_EQ(parsed("\xEF\xBB\xBFif x\r\nreturn 1 ¬\r\n + 2\rend if\r\n"), "if x\n  return (+ 1 2)");
}

TEST(ParserStatements, HaveRangesInTheSource) {
  const std::string source = "-- é\nset x to a & 12";
  const SyntaxDictionaries dictionaries;
  const ParseResult result = parse(source, dictionaries);
  ASSERT_TRUE(result.tree);
  const auto& statement = static_cast<const Assignment&>(*result.tree->body.front());
  const auto text = [&](SourceRange range) { return source.substr(range.offset, range.length); };
  EXPECT_EQ(text(statement.range), "set x to a & 12");
  EXPECT_EQ(text(statement.value->range), "a & 12");
  EXPECT_EQ(text(static_cast<const Binary&>(*statement.value).right->range), "12");
  EXPECT_EQ(positionOf(source, statement.range.offset).line, 2u);
  EXPECT_EQ(positionOf(source, 5).column, 5u); // behind the é of two bytes
}

} // namespace
} // namespace tabwright::applescript::test
