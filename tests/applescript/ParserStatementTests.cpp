#include "applescript/ParserTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace tabwright::applescript::test {
namespace {

void expectTrees(const std::vector<ParserCase>& cases) {
  for (const ParserCase& each : cases)
    EXPECT_EQ(parsed(each.source), each.expected) << each.source;
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
      {"on open {a, b}\nend open", "on open direct (list a b)"},
      {"on f given x:y : 3, z:w\nend f", "on f labelled x:y=3 z:w"},
      {"on a:b c:d\nend a:c:", "on a:c: b d"},
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
