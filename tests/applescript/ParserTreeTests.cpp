// Trees of what no script of scripts/ can show: what needs an application or a bridge to run, and what leaves no trace
// in a result.
#include "applescript/ParserTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace tabwright::applescript::test {
namespace {

void expectTrees(const std::vector<ParserCase>& cases) {
  for (const ParserCase& each : cases)
    EXPECT_EQ(parsed(each.source), each.expected) << each.source;
}

TEST(ParserTrees, OfExpressions) {
  expectTrees({
      {"«constant ****yes »", "constant:«constant ****yes »'yes '"},
      {"«data utxt00410042»", "«data utxt00410042»"},
      {"«property pnam» of x", "(property «property pnam»'pnam' of x)"},
      {"«event coregetd» x given «class kocl»:y", "(command «event coregetd»'coregetd' direct x kocl:y)"},
      {"a -- not this\n# nor this\n(* nor (* this *) *) b ¬\n & c", "a\n(& b c)"},
      {"window named \"x\"", "(name window'cwin' at \"x\")"},
      {"a's b:c's d is:e", "(message a b:(property d of c) is:e)"},
      {"areaOf of x", "(property areaOf of x)"}, // no handler has labels so
      {"x's count()", "(call count on x)"},
      {"(random number) - 1", "(- (brackets (command random number'sysvrand')) 1)"},
      {"random number - 1", "(- (command random number'sysvrand') 1)"},
      {"offset of a of b in c", "(command offset'sysooffs' psof:(property a of b) psin:c)"},
      {"count of words of t > 0", "(> (command count'corecnte' direct (every word'cwor' of t)) 0)"},
      {"application \"X\" is not running", "(= (property running'prun' of (application \"X\")) false)"},
      {"set the clipboard to the clipboard & 1",
       "(command set the clipboard to'JonSpClp' direct (& (command the clipboard'JonSgClp') 1))"},
      {"do shell script s without altering line endings", "(command do shell script'sysoexec' direct s alen:false)"},
  });
}

TEST(ParserTrees, OfStatements) {
  expectTrees({
      {"considering case, hyphens and white space but ignoring numeric strings\nend considering",
       "considering +case +hyphens +white space -numeric strings"},
      {"ignoring application responses\nx\nend ignoring", "considering -application responses\n  x"},
      {"on open {a, b}\nend open", "on open direct (list a b)"},
      {"on a:b c:d\nend a:c:", "on a:c: b d"},
      {"use AppleScript version \"2.4\"\nuse scripting additions\nuse framework \"Foundation\"",
       "use 0 \"\" version \"2.4\"\nuse 1 \"\"\nuse 2 \"Foundation\""},
      {"use S : application id \"com.apple.safari\" without importing",
       "use 3 \"com.apple.safari\" id as S without-importing"},
      {"\xEF\xBB\xBFif x\r\nreturn 1 ¬\r\n + 2\rend if\r\n", "if x\n  return (+ 1 2)"}, // any kind of line end
  });
}

TEST(ParserTrees, KeepTheSpellingThatCameFirst) {
  expectTrees({
      {"on f(newUrl)\nreturn NEWURL\nend f", "on f newUrl\n  return newUrl"},
      {"set x to {tabID:1}\ntabid of x", "set x := (record tabID:1)\n(property tabID of x)"},
      {"set Größe to 1\nGRÖSSE2 & gröSSe & |grösse|", "set Größe := 1\n(& (& GRÖSSE2 Größe) Größe)"},
  });
}

} // namespace
} // namespace tabwright::applescript::test
