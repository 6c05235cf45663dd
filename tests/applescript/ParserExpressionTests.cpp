#include "applescript/ParserTestSupport.h"

#include <gtest/gtest.h>

#include <vector>

namespace tabwright::applescript::test {
namespace {

void expectTrees(const std::vector<ParserCase>& cases) {
  for (const ParserCase& each : cases)
    EXPECT_EQ(parsed(each.source), each.expected) << each.source;
}

TEST(ParserExpressions, BindByPrecedence) {
  expectTrees({
      {"-x ^ 2", "(^ (negate x) 2)"},
      {"a as text & b", "(& (as a class:text'ctxt') b)"},
      {"x as {text, integer}", "(as x (list class:text'ctxt' class:integer'long'))"},
      {"not a is b and c or d", "(or (and (not (= a b)) c) d)"},
      {"a = not b", "(= a (not b))"},
  });
}

TEST(ParserExpressions, ReadLiterals) {
  expectTrees({
      {"{a:1, name:2, |end|:3, class:4}", "(record a:1 name'pnam':2 end:3 class'pcls':4)"},
      {"{missing value, null, pi, return, tab}", "(list missing null pi return tab)"},
      {"{text, Unicode text, list}", "(list class:text'ctxt' class:Unicode text'utxt' class:list'list')"},
      {"«class utf8»", "class:«class utf8»'utf8'"},
      {"«constant ****yes »", "constant:«constant ****yes »'yes '"},
      {"«data utxt00410042»", "«data utxt00410042»"},
      {"«property pnam» of x", "(property «property pnam»'pnam' of x)"},
      {"a -- not this\n# nor this\n(* nor (* this *) *) b ¬\n & c", "a\n(& b c)"},
  });
}

TEST(ParserExpressions, ChainContainers) {
  expectTrees({
      {"a's b of c", "(property b of (property a of c))"},
      {"tabID of r as text", "(as (property tabID of r) class:text'ctxt')"},
      {"front window", "(first window'cwin')"},
      {"some item of middle item of xs", "(some item'cobj' of (middle item'cobj' of xs))"},
      {"text from word 1 to end of t", "(range text'ctxt' at (index word'cwor' at 1) thru (place end) of t)"},
      {"end of xs", "(place end of xs)"},
      {"window named \"x\"", "(name window'cwin' at \"x\")"},
      {"window before window 2", "(before window'cwin' of (index window'cwin' at 2))"},
      {"AppleScript's text item delimiters", "(property text item delimiters'txdl' of constant:AppleScript'ascr')"},
  });
}

TEST(ParserExpressions, TellCallsFromReferences) {
  expectTrees({
      {"f(x) of me", "(call f on me x)"},
      {"name of f(x) of s", "(property name'pnam' of (call f on s x))"},
      {"C's alloc()'s initWithData:d encoding:e", "(message (call alloc on C) initWithData:d encoding:e)"},
      {"C's x:1 |error|:(missing value)", "(message C x:1 error:(brackets missing))"},
      {"my setValue:1 forKey:2", "(message me setValue:1 forKey:2)"},
      {"a's b:c's d is:e", "(message a b:(property d of c) is:e)"},
      {"areaOf of x", "(property areaOf of x)"}, // no handler has labels so
      {"x's count()", "(call count on x)"},
  });
}

TEST(ParserExpressions, ReadCommands) {
  expectTrees({
      {"(random number) - 1", "(- (brackets (command random number'sysvrand')) 1)"},
      {"random number - 1", "(- (command random number'sysvrand') 1)"},
      {"offset of a of b in c", "(command offset'sysooffs' psof:(property a of b) psin:c)"},
      {"count of words of t > 0", "(> (command count'corecnte' direct (every word'cwor' of t)) 0)"},
      {"x exists and y", "(and (command exists'coredoex' direct x) y)"},
      {"x does not exist", "(= (command exists'coredoex' direct x) false)"},
      {"application \"X\" is not running", "(= (property running'prun' of (application \"X\")) false)"},
      {"set the clipboard to the clipboard & 1",
       "(command set the clipboard to'JonSpClp' direct (& (command the clipboard'JonSgClp') 1))"},
      {"do shell script s without altering line endings", "(command do shell script'sysoexec' direct s alen:false)"},
      {"«event coregetd» x given «class kocl»:y", "(command «event coregetd»'coregetd' direct x kocl:y)"},
  });
}

} // namespace
} // namespace tabwright::applescript::test
